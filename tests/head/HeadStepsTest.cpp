#include "maths/CMaLine.h"
#include "maths/CMaPlane.h"
#include "platform/SettingsStore.h"
#include "tests/head/HeadChecks.h"
#include "tests/support/SimulatedHead.h"

#include <functional>

using namespace qmv40;

/// The order in which the head model calls the vector geometry and the settings store, and the step that it names when
/// a call fails. This program replaces planes, lines and the store by its own: they record their calls and fail on
/// request.

namespace {

struct Recorder {
    std::vector<std::string> steps;
    std::string failing; ///< this step fails
    int keyOpenings = 0;
} recorder;

void Record(const std::string& step) {
    recorder.steps.push_back(step);
    if (step == recorder.failing) throw GeometryError(GeometryError::Reason::Impossible);
}

std::string NameOf(const CMaPointArray& points);

} // namespace

void CMaPlane::Fit(const CMaPointArray& points) { Record("plane " + NameOf(points)); }
void CMaLine::Fit(const CMaPointArray& points) { Record("line " + std::to_string(points.GetSize())); }
double CMaLine::AngleWith(const CMaPlane&) const {
    Record("angle");
    return 30.0;
}
CMaPoint CMaPoint::ProjectionOn(const CMaPlane&) const noexcept {
    recorder.steps.push_back("projection");
    return {1e9, 1e9, 1e9};
}

struct SettingsKey::State {};
SettingsKey::SettingsKey(const char*) { ++recorder.keyOpenings; }
SettingsKey::~SettingsKey() = default;
bool SettingsKey::IsOpen() const noexcept { return true; }
LSTATUS SettingsKey::Query(const char* name, std::span<char>, DWORD&, DWORD&) const {
    recorder.steps.push_back(name);
    return ERROR_FILE_NOT_FOUND;
}

namespace {

/// The sets have five and six points.
std::string NameOf(const CMaPointArray& points) { return points.GetSize() == 5 ? "A" : "B"; }

class HeadSteps : public testing::Test {
protected:
    HeadSteps() { recorder = {}; }
    ~HeadSteps() override { recorder = {}; }

    Raised Compute(const std::string& failing = "") {
        recorder = {};
        recorder.failing = failing;
        return Computing(head, SimulatedHead().ASet(45.0, 5), SimulatedHead().BSet(60.0, 6));
    }

    RoundThePole head;
};

TEST_F(HeadSteps, RunInTheRequiredOrder) {
    EXPECT_EQ(Compute().code, S_OK);
    std::vector<std::string> expected{"Head Centre To Drive Cup X Offset"};
    const auto add = [&](const char* step, int times) { expected.insert(expected.end(), std::size_t(times), step); };
    add("Locked To Unlocked X Offset", 2); // for each set
    add("plane B", 1);
    add("projection", 6);
    add("plane A", 1);
    add("projection", 5);
    add("Head Centre To Lever Centre X Offset", 2);
    add("Lever Centre To Ball Centre X Offset", 2);
    add("plane A", 1);
    add("line 2", 1);
    add("angle", 1);
    EXPECT_EQ(recorder.steps, expected) << "after a missing X, Y and Z are not read";
}

TEST_F(HeadSteps, DoNotFitTheProjectedPoints) {
    ASSERT_EQ(Compute().code, S_OK);
    for (const Triple& point : PointsOf(head.AAxisPoints())) EXPECT_LT(std::abs(point[0]), 1e6);
}

TEST_F(HeadSteps, OpenTheKeyFourTimesForTheLeverGeometry) {
    recorder = {};
    head.CalculateLeverGeometry();
    EXPECT_EQ(recorder.keyOpenings, 4);
}

TEST_F(HeadSteps, AreNamedWhenTheAlignmentCorrectionFails) {
    const struct {
        const char* failing;
        const wchar_t* description;
    } cases[] = {{"line 2", L"Error Fitting Line Through Point Array"},
                 {"angle", L"Error Calculating Angle with Plane"}};
    for (const auto& [failing, description] : cases) {
        ExpectFailure(Compute(failing),
                      {QMV_E_GEOMETRY_IMPOSSIBLE, L"RoundThePole::CalculateRotationFromIdealAlignment", description,
                       L"Unspecified"});
    }
    const CMaPointArray points = ArrayOf({{0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}, {}});
    recorder.failing = "plane A";
    ExpectFailure(RaisedBy([&] { head.CalculateRotationFromIdealAlignment(points); }),
                  {QMV_E_GEOMETRY_IMPOSSIBLE, L"RoundThePole::CalculateRotationFromIdealAlignment",
                   L"Error Fitting points to a circle", L"Unspecified"});
}

TEST_F(HeadSteps, AreNamedWhenACircleFitFails) {
    for (const char* const failing : {"plane A", "plane B"}) ExpectFailure(Compute(failing), failures::noCircle);
}

// The replaced line returns an angle of 30 degrees. The head is captured at B = 45.
TEST_F(HeadSteps, UseTheAngleOfTheLine) {
    ASSERT_EQ(Compute().code, S_OK);
    const double byQuadrant[] = {150.0, 30.0, -30.0, -150.0};
    const int quadrant = head.DetermineQuadrant(head.AAxisPoints());
    EXPECT_EQ(head.RequiredRotationAroundZ(), byQuadrant[quadrant - 1] - 45.0);
}

} // namespace
