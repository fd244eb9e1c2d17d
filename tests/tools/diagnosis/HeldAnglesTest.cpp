#include "tools/diagnosis/SetJudgement.h"

#include "tests/tools/diagnosis/Captures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace qmv40;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(HeldAngles, HaveNoFindingWhenEachSetHoldsItsAxis) {
    EXPECT_THAT(diagnosis::JudgeHeldAngles(SetsOf(SimulatedHead().ASet(45), SimulatedHead().BSet(75))), IsEmpty());
    EXPECT_THAT(diagnosis::JudgeHeldAngles({}), IsEmpty());
}

TEST(HeldAngles, ShowSetsThatAreExchanged) {
    const auto findings = diagnosis::JudgeHeldAngles(SetsOf(SimulatedHead().BSet(75), SimulatedHead().ASet(45)));
    ASSERT_EQ(1u, findings.size());
    EXPECT_EQ(diagnosis::FindingKind::SetsExchanged, findings[0].kind);
    EXPECT_EQ(diagnosis::Severity::Fault, findings[0].severity);
}

TEST(HeldAngles, NameThePointsThatDifferFromMostOthers) {
    Items a = SimulatedHead().ASet(45);
    a[0].BPosition = 60.0;
    a[4].BPosition = 45.00001;
    Items b = SimulatedHead().BSet(75);
    b[2].APosition = 90.0;
    const auto findings = diagnosis::JudgeHeldAngles(SetsOf(a, b));
    ASSERT_EQ(2u, findings.size());
    EXPECT_EQ(diagnosis::FindingKind::OtherAxisNotHeld, findings[0].kind);
    EXPECT_EQ(45.0, findings[0].figure);
    EXPECT_THAT(findings[0].points, ElementsAre(0, 4));
    EXPECT_EQ(75.0, findings[1].figure);
    EXPECT_THAT(findings[1].points, ElementsAre(9));
}

} // namespace
