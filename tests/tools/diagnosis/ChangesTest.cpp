// A finding about a change in the middle of a capture gives the change as later points minus earlier points, and for a
// change between the sets as B set minus A set.

#include "tests/tools/diagnosis/PaperTrial.h"

#include <gtest/gtest.h>

using namespace qmv40;

namespace {

/// Each is many times what the noise of these captures (5 um at most) explains.
constexpr double turned = 1.5;                  // degrees
constexpr double longer = 30.0;                 // mm
constexpr model::Vector3 moved{0.5, -0.4, 0.3}; // mm

struct Change {
    diagnosis::FindingKind kind;
    diagnosis::FindingKind kindBetweenTheSets;
    void (*make)(paper::Measurement&);
    double (*size)(const diagnosis::Finding&);
    double expected;
    double within; ///< how far noise can move the figure, at the stylus lengths that are drawn
};

double Figure(const diagnosis::Finding& finding) { return finding.figure; }

const Change changes[] = {{diagnosis::FindingKind::TurnedOnMount, diagnosis::FindingKind::TurnedOnMount,
                           [](paper::Measurement& each) { each.mounting += turned; }, Figure, turned, 0.05},
                          {diagnosis::FindingKind::StylusChanged, diagnosis::FindingKind::StylusChanged,
                           [](paper::Measurement& each) { each.tip.z -= longer; }, Figure, longer, 0.1},
                          {diagnosis::FindingKind::SphereMoved, diagnosis::FindingKind::SetsApart,
                           [](paper::Measurement& each) { each.sphere = each.sphere + moved; },
                           [](const diagnosis::Finding& finding) { return finding.vector.x; }, moved.x, 0.05}};

struct Place {
    std::size_t from; ///< the first measurement that is changed, numbered through both sets, the A set first
    std::size_t to;   ///< the first one after these that is not changed
    double sign;      ///< 1 when the changed points are the B set or the later points, -1 when they are the others
    std::size_t firstNamed; ///< the first point that the finding names
    const char* why;
};

constexpr std::size_t aCount = 7, count = 19;
const Place places[] = {{aCount, count, 1.0, aCount, "the B set"},
                        {0, aCount, -1.0, aCount, "the A set: the B set then differs in the opposite direction"},
                        {aCount + 5, count, 1.0, aCount + 5, "from a point of the B set on"},
                        {3, count, 1.0, 3, "from a point of the A set on, and the B set after it"}};

TEST(Changes, AreGivenAsLaterPointsMinusEarlierPoints) {
    for (std::uint64_t seed = 1; seed <= 8; ++seed) {
        for (const Change& change : changes) {
            for (const Place& place : places) {
                PaperCapture capture(seed);
                capture.SetPositions(45, {0, 15, 30, 45, 60, 75, 90}, 90,
                                     {-180, -150, -120, -90, -60, -30, 0, 30, 60, 90, 120, 150});
                std::size_t i = 0;
                for (auto* const set : {&capture.aSet, &capture.bSet})
                    for (auto& each : *set) {
                        if (i >= place.from && i < place.to) change.make(each);
                        ++i;
                    }
                capture.Measure();
                const PaperTrial trial(capture);
                SCOPED_TRACE(std::string(place.why) + ", seed " + std::to_string(seed) + "\n" + trial.Text());
                ASSERT_FALSE(trial.findings.empty());
                const diagnosis::Finding& finding = trial.findings.front();
                const bool isBetween = place.firstNamed == aCount;
                EXPECT_EQ(isBetween ? change.kindBetweenTheSets : change.kind, finding.kind);
                ASSERT_FALSE(finding.points.empty());
                if (finding.kind != diagnosis::FindingKind::SetsApart) {
                    EXPECT_EQ(place.firstNamed, finding.points.front());
                }
                EXPECT_NEAR(place.sign * change.expected, change.size(finding), change.within);
            }
        }
    }
}

} // namespace
