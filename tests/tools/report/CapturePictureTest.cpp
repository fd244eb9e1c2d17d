#include "tools/report/CapturePicture.h"

#include "tests/support/SimulatedHead.h"
#include "tests/tools/view/SvgDocument.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace qmv40;

namespace {

using Items = std::vector<HeadAlignmentDataItem>;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

captures::CaptureFile FileOf(const std::string& name, const Items& items) {
    captures::CaptureFile file{name, items, {}};
    for (std::size_t i = 0; i < items.size(); ++i) file.lines.push_back(i + 2);
    return file;
}

/// A capture without noise, in which a test can move single points.
struct DrawnCapture {
    explicit DrawnCapture(std::size_t ofBSet = 13) : bSet(head.BSet(90, static_cast<int>(ofBSet), -180, 180)) {}

    SvgElement Picture() const {
        const captures::CaptureFiles files{FileOf("notes/a<1>.csv", aSet), FileOf("notes/b.csv", bSet),
                                           captures::SetsOf(aSet, bSet, {})};
        return ParseSvg(report::CapturePicture({files, findings}));
    }

    SimulatedHead head;
    Items aSet = head.ASet(45);
    Items bSet;
    std::vector<diagnosis::Finding> findings;
};

std::vector<std::string> TextsOf(const SvgElement& picture) {
    std::vector<std::string> texts;
    for (const SvgElement* const text : ElementsOf(picture, "text")) texts.push_back(text->text);
    return texts;
}

double LengthOf(const SvgElement& stick) {
    const std::vector<SvgPoint> ends = PointsOf(stick);
    return std::hypot(ends[1].x - ends[0].x, ends[1].y - ends[0].y);
}

/// Each point has a stick for each of its two residuals. Each of the two scale bars has three: the bar and its ends.
constexpr std::size_t sticksOfAPoint = 2, sticksOfBars = 6;

TEST(CapturePicture, HasAStickForEachOfTheTwoResidualsOfAPoint) {
    const DrawnCapture capture;
    const SvgElement picture = capture.Picture();
    EXPECT_EQ(sticksOfAPoint * (capture.aSet.size() + capture.bSet.size()) + sticksOfBars,
              ElementsOf(picture, "path", "q-good").size());
    EXPECT_TRUE(ElementsOf(picture, "path", "q-bad").empty());
}

TEST(CapturePicture, DrawsAMicrometreAsAMillimetreOfPaper) {
    DrawnCapture capture;
    const std::size_t bad = capture.aSet.size() + 2;
    capture.bSet[2].ZPosition += 0.004; // out of the B circle's plane
    capture.findings = {{diagnosis::FindingKind::PointOff, diagnosis::Severity::Fault, {bad}}};
    const SvgElement picture = capture.Picture();
    const auto sticks = ElementsOf(picture, "path", "q-bad");
    ASSERT_EQ(2u, sticks.size());
    constexpr double ofPaper = 0.002; // coordinates have three decimals
    EXPECT_NEAR(0.0, LengthOf(*sticks[0]), ofPaper) << "radial";
    EXPECT_NEAR(4.0, LengthOf(*sticks[1]), ofPaper) << "out of the plane";
    EXPECT_LT(PointsOf(*sticks[1])[1].y, PointsOf(*sticks[1])[0].y) << "a point off towards +Z is drawn upwards";
    EXPECT_THAT(TextsOf(picture), Contains(HasSubstr("um; residuals 1000 times as long")));
}

TEST(CapturePicture, NamesTheSuspiciousPointByFileAndLine) {
    DrawnCapture capture;
    capture.findings = {{diagnosis::FindingKind::PointOff, diagnosis::Severity::Fault, {1}}};
    EXPECT_THAT(TextsOf(capture.Picture()), Contains("a<1>.csv:3"));
}

TEST(CapturePicture, NamesTheEndsOfARunOfPointsAndMarksAll) {
    DrawnCapture capture;
    capture.findings = {{diagnosis::FindingKind::SphereMoved, diagnosis::Severity::Fault, {2, 3, 4, 5, 6}}};
    const SvgElement picture = capture.Picture();
    EXPECT_EQ(sticksOfAPoint * 5, ElementsOf(picture, "path", "q-bad").size());
    EXPECT_THAT(TextsOf(picture), Contains("a<1>.csv:4"));
    EXPECT_THAT(TextsOf(picture), Contains("a<1>.csv:8"));
    EXPECT_THAT(TextsOf(picture), Not(Contains("a<1>.csv:5")));
}

TEST(CapturePicture, CutsAStickThatWouldLeaveThePaper) {
    DrawnCapture capture;
    capture.bSet[2].ZPosition += 5.0;
    capture.findings = {{diagnosis::FindingKind::PointOff, diagnosis::Severity::Fault, {capture.aSet.size() + 2}}};
    const SvgElement picture = capture.Picture();
    const double width = std::stod(picture.Attribute("width")), height = std::stod(picture.Attribute("height"));
    for (const SvgElement* const stick : ElementsOf(picture, "path")) {
        for (const SvgPoint& point : PointsOf(*stick)) {
            EXPECT_TRUE(point.x > 0.0 && point.x < width && point.y > 0.0 && point.y < height)
                << point.x << ' ' << point.y;
        }
    }
    // Two sticks, and the head of an arrow at the one that was cut
    EXPECT_EQ(3u, ElementsOf(picture, "path", "q-bad").size());
}

TEST(CapturePicture, DrawsLargeResidualsLessEnlarged) {
    DrawnCapture capture;
    capture.bSet = WithNoise(capture.bSet, 0.05, 3);
    EXPECT_THAT(TextsOf(capture.Picture()), Contains(HasSubstr("residuals 100 times as long")));
}

TEST(CapturePicture, SaysWhatFormsNoCircle) {
    DrawnCapture capture;
    for (HeadAlignmentDataItem& item : capture.aSet) item = capture.aSet.front();
    EXPECT_THAT(TextsOf(capture.Picture()), Contains("The points form no circle."));
}

TEST(CapturePicture, OfManyPointsDrawsAThousandAndTheNamedOne) {
    DrawnCapture capture(20001);
    capture.findings = {{diagnosis::FindingKind::PointOff, diagnosis::Severity::Fault, {capture.aSet.size() + 11}}};
    const SvgElement picture = capture.Picture();
    EXPECT_LT(ElementsOf(picture, "circle").size(), 2500u);
    EXPECT_THAT(TextsOf(picture), Contains("b.csv:13"));
}

} // namespace
