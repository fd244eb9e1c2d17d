#include "tests/head/HeadChecks.h"
#include "tests/head/HeadTest.h"
#include "tests/support/Bstr.h"
#include "tests/support/FailingAllocations.h"
#include "tests/support/SimulatedHead.h"
#include "tests/support/TemporaryFolder.h"

#include <functional>
#include <new>

/// The step that a head names when memory runs out in it.

namespace {

struct Step {
    std::wstring source;
    std::wstring description;
    bool operator==(const Step&) const = default;
};

void PrintTo(const Step& step, std::ostream* out) {
    *out << testing::PrintToString(step.source) << ' ' << testing::PrintToString(step.description);
}

class StepsWithoutMemory : public HeadTest {
protected:
    /// Runs `action` on a new head again and again. In each run the next allocation fails. Returns the named steps in
    /// their order, without repetitions of the step before.
    static std::vector<Step> StepsOf(const std::function<void(RoundThePole&)>& action) {
        constexpr long moreThanEnough = 2000;
        std::vector<Step> steps;
        for (long n = 0; n < moreThanEnough; ++n) {
            SCOPED_TRACE(testing::Message() << "allocation " << n << " fails");
            RoundThePole head;
            Raised raised;
            FailingAllocations failing(n);
            try {
                raised = RaisedBy([&] { action(head); });
            } catch (const std::bad_alloc&) {
            }
            if (!failing.Stop()) return steps;
            if (!raised.record) continue;
            EXPECT_EQ(raised.code, E_OUTOFMEMORY);
            const Step step{raised.record->source, raised.record->description};
            if (steps.empty() || steps.back() != step) steps.push_back(step);
        }
        ADD_FAILURE() << "more than " << moreThanEnough << " allocations";
        return steps;
    }

    AlignmentArray aAxisPoints{SimulatedHead().ASet(45.0)};
    AlignmentArray bAxisPoints{SimulatedHead().BSet(60.0)};
};

TEST_F(StepsWithoutMemory, AreNamedInAComputation) {
    const std::vector<Step> expected{
        {L"RoundThePole::ComputeGeometry", L"Unspecified"},
        {L"RoundThePole::ComputeGeometry", L"Error Copying the safe array data."},
        {L"RoundThePole::ModifyDataForLockedPosition", L"Unspecified"},
        {L"RoundThePole::AddAPoint", L"Error Adding A Point to the A Point Collection"},
        {L"RoundThePole::FitPointsToACircle", L"Error Fitting points to a circle"},
        {L"RoundThePole::GetCircleCentre", L"Unspecified"},
        {L"RoundThePole::GetHeadCentreToLeverCentreOffset", L"Unspecified"},
        {L"RoundThePole::GetLeverCentreToBallCentreOffset", L"Unspecified"},
        {L"RoundThePole::GetLeverLockedApproachOffset", L"Unspecified"},
        {L"RoundThePole::GetLeverUnlockingCentreOfRotation", L"Unspecified"},
        {L"RoundThePole::GetLeverCentreToBallCentreOffset", L"Unspecified"},
        {L"RoundThePole::GetLeverUnlockedApproachOffset", L"Unspecified"},
        {L"RoundThePole::GetLeverLockingCentreOfRotation", L"Unspecified"},
        {L"RoundThePole::CalculateRotationFromIdealAlignment", L"Error Adding Points To Point Array"}};
    EXPECT_EQ(StepsOf([&](RoundThePole& head) { head.ComputeGeometry(aAxisPoints.Address(), bAxisPoints.Address()); }),
              expected);
}

TEST_F(StepsWithoutMemory, AreNamedInThePositionQueries) {
    CMaVector out(0.0, 0.0, 0.0);
    EXPECT_EQ(StepsOf([&](RoundThePole& head) { head.ApproachPosition(30.0, 60.0, 10.0, out); }),
              (std::vector<Step>{{L"RoundThePole::ApproachPosition", L"Error Calculating Approach Position"}}));
    EXPECT_EQ(StepsOf([&](RoundThePole& head) { head.EngagementPosition(30.0, 60.0, out); }),
              (std::vector<Step>{{L"RoundThePole::EngagementPosition", L"Error Calculating Engagement Position"}}));
    EXPECT_EQ(StepsOf([&](RoundThePole& head) { head.RotatedAAxis(60.0, out); }),
              (std::vector<Step>{{L"RoundThePole::RotatedAAxis", L"Error Calculating A Axis Rotation"}}));
}

/// Fails each allocation of a call in turn, one in each run. The call must succeed, or end with E_OUTOFMEMORY and with
/// this record.
void ExpectOneRecord(const std::function<void(RoundThePole&)>& action, const wchar_t* description) {
    bool wasReached = true;
    int failures = 0;
    for (long n = 0; wasReached; ++n) {
        SCOPED_TRACE(testing::Message() << "allocation " << n << " fails");
        ASSERT_LT(n, 2000) << "more than 2000 allocations";
        RoundThePole head;
        Raised raised;
        FailingAllocations failing(n);
        try {
            raised = RaisedBy([&] { action(head); });
        } catch (const std::bad_alloc&) {
            failing.Stop();
            FAIL() << "std::bad_alloc left the call";
        }
        wasReached = failing.Stop();
        if (!wasReached || raised.code == S_OK) continue;
        ++failures;
        EXPECT_EQ(raised.code, E_OUTOFMEMORY);
        ASSERT_TRUE(raised.record);
        EXPECT_EQ(raised.record->source, L"RoundThePole::LoadFromFile");
        EXPECT_EQ(raised.record->description, description);
    }
    EXPECT_GT(failures, 3);
}

// The source is that of the load for both: the text is fixed.
TEST_F(StepsWithoutMemory, AreNamedAsAWholeInALoadOrASave) {
    const TemporaryFolder folder;
    Bstr name(folder.Path("head.ini"));
    RoundThePole().SaveToFile(name.Address());
    ExpectOneRecord([&](RoundThePole& head) { head.LoadFromFile(name.Address()); }, L"Failed To Load File");
    std::filesystem::remove(folder.Path("head.ini"));
    ExpectOneRecord([&](RoundThePole& head) { head.SaveToFile(name.Address()); }, L"Failed To Save File");
}

TEST_F(StepsWithoutMemory, AreNamedWhenOneNumberIsReadOrWritten) {
    const TemporaryFolder folder;
    const std::wstring file = folder.Path("head.ini").wstring();
    EXPECT_EQ(StepsOf([&](RoundThePole& head) { head.WriteDoubleToIniFile(L"SECTION", L"Key", 1.0, file.c_str()); }),
              (std::vector<Step>{{L"RoundThePole::WriteDoubleToIniFile", L"Error calling IniSetDoubleValue"}}));
    EXPECT_EQ(StepsOf([&](RoundThePole& head) { head.ReadDoubleFromIniFile(L"SECTION", L"Key", file.c_str()); }),
              (std::vector<Step>{{L"RoundThePole::ReadDoubleFromIniFile", L"Error calling IniGetDoubleValue"}}));
}

} // namespace
