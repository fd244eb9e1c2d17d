#include "tools/check/PlanCheck.h"
#include "tests/support/IdealHead.h"

#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <set>
#include <string>
#include <vector>

using namespace qmv40;

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

/// From (0, 0) to (0, 0) with the ideal head, worked out by hand from the numbers of docs/conventions.md.
plans::Plan PlanByHand() {
    const auto azimuth = [](double x, double y) { return model::ToDegrees(std::atan2(y, x)); };
    const double leverExit = azimuth(30.3, 19.3);
    const double leverEntry = azimuth(30.3, 24.3);
    const double peg = azimuth(6.95, -34.0);
    // Arcs are left-handed: about the vertical, a positive angle turns clockwise as seen from above.
    const RequiredMoves moves{.ApproachUnLockLever = {30.3, -24.3, -36.55},
                              .EngageWithUnLockLever = {30.3, -19.3, -36.55},
                              .UnLock = {30.3, -2.0, -36.25, -1.0, 0.0, 0.0, -135.0},
                              .DisengageFromUnLockLever = {30.3, 19.3, 35.0},
                              .RotateToPeg = {0.0, 0.0, -32.25, 0.0, 0.0, 1.0, leverExit - peg},
                              .MoveToPegAtSafeZ = {6.95, -34.0, 35.0},
                              .ApproachPeg = {6.95, -34.0, 11.5},
                              .EngageWithPeg = {6.95, -24.0, 11.5},
                              .IntermediateAPosition = {0.0, 0.0, 0.0, -1.0, 0.0, 0.0, 0.0},
                              .MoveToBPosition = {0.0, 0.0, 0.0, 0.0, 0.0, 1.0, 0.0},
                              .MoveToAPosition = {0.0, 0.0, 0.0, -1.0, 0.0, 0.0, 0.0},
                              .DisengageFromPeg = {6.95, -34.0, 11.5},
                              .DisengageFromPegToSafeZ = {6.95, -34.0, 35.0},
                              .RotateToLockLever = {0.0, 0.0, -32.25, 0.0, 0.0, 1.0, peg - leverEntry},
                              .MoveToLockLeverAtSafeZ = {30.3, 24.3, 35.0},
                              .ApproachLockLever = {30.3, 24.3, -36.55},
                              .EngageWithLockLever = {30.3, 19.3, -36.55},
                              .Lock = {30.3, 2.0, -36.25, 1.0, 0.0, 0.0, -138.0},
                              .DisengageFromLockLever = {30.3, -19.3, -26.55}};
    return {{0.0, 0.0}, {0.0, 0.0}, plans::MovesInOrder(moves)};
}

check::PlanReport Checked(const model::HeadModel& head, const check::CheckOptions& options, const plans::Plan& plan) {
    check::Surroundings surroundings(head, options.sizes, options.scene);
    return check::CheckPlan(head, options, plan, surroundings);
}

std::vector<std::string> NamesOf(const check::PlanReport& report) {
    std::vector<std::string> names;
    for (const check::Finding& finding : report.findings) names.emplace_back(check::TextOf(finding.kind).name);
    return names;
}

TEST(PlanCheck, PassesAPlanWorkedOutByHand) {
    const check::PlanReport report = Checked(IdealHead(), {}, PlanByHand());
    EXPECT_THAT(NamesOf(report), IsEmpty());
    EXPECT_EQ(plans::moveCount, report.moves.size());
    EXPECT_LE(*report.targetMiss, rounding);
}

TEST(PlanCheck, HasAFindingWhenANumberOfTheHeadIsNaN) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    const model::HeadModel heads[] = {IdealHead(0.0, {nan, 0.0, 0.0}), IdealHead(0.0, {0.0, 0.0, nan}), IdealHead(nan)};
    for (const model::HeadModel& head : heads) {
        EXPECT_THAT(NamesOf(Checked(head, {}, PlanByHand())), Not(IsEmpty()));
    }
    check::CheckOptions unknownSphere;
    unknownSphere.sizes.poleSphereRadius = nan;
    EXPECT_THAT(NamesOf(Checked(IdealHead(), unknownSphere, PlanByHand())), Not(IsEmpty()));
}

TEST(PlanCheck, StopsAtAMoveThatCannotBeRun) {
    plans::Plan plan = PlanByHand();
    plan.moves[5].data = XYZData{6.95, std::numeric_limits<double>::quiet_NaN(), 35.0};
    const check::PlanReport report = Checked(IdealHead(), {}, plan);
    EXPECT_EQ(5u, report.moves.size());
    EXPECT_THAT(NamesOf(report), ElementsAre("not-a-number"))
        << "no finding about the move before, which depends on this one";
    EXPECT_EQ(5u, report.findings.front().move);
    EXPECT_FALSE(report.targetMiss);
}

TEST(PlanCheck, ComparesTheWholeArcWithTheTravel) {
    // UnLock: the machine starts 17.3 mm beside the axis and 0.3 mm below it, and goes over the top of the circle.
    const double top = -36.25 + std::hypot(17.3, 0.3);
    plans::Plan plan = PlanByHand();
    plan.moves.resize(3);
    check::CheckOptions options;
    options.travel[2].largest = top + 0.01;
    EXPECT_THAT(NamesOf(Checked(IdealHead(), options, plan)), Not(testing::Contains("travel-limit-exceeded")));
    options.travel[2].largest = top - 0.01;
    EXPECT_THAT(NamesOf(Checked(IdealHead(), options, plan)), testing::Contains("travel-limit-exceeded"));
}

TEST(PlanCheck, ChecksTheWayFromOnePlanToTheNext) {
    const model::HeadModel head = IdealHead();
    const check::PlanReport first = Checked(head, {}, PlanByHand());
    check::Surroundings surroundings(head, {}, {});
    const check::PlanReport second = check::CheckPlan(head, {}, PlanByHand(), surroundings, &first);
    EXPECT_THAT(NamesOf(second), IsEmpty());
    // Up from 10 mm above the ball, across at the safe height, and down to 5 mm beside the ball.
    ASSERT_EQ(2u, second.way.size());
    EXPECT_TRUE(IsAt({30.3, -19.3, -26.55}, second.way[0].path.Start(), 0.0));
    EXPECT_TRUE(IsAt({30.3, -19.3, 35.0}, second.way[1].path.Start(), rounding));
    EXPECT_TRUE(IsAt({30.3, -24.3, 35.0}, second.moves.front().run.path.Start(), rounding));
    EXPECT_NEAR(5.0 - 2.5, second.moves.front().clearance.toLevers, rounding);
}

TEST(PlanCheck, FindsAnObstacleBetweenOnePlanAndTheNext) {
    const model::HeadModel head = IdealHead();
    // The body of the head is assumed to be 40 mm thick and 150 mm high.
    const auto pin = [](const model::Vector3& centre) {
        return check::obstacles::Obstacle{
            "pin", "ball", std::make_shared<check::obstacles::Rod>(centre, centre, 0.1), {}};
    };
    const struct {
        const char* why;
        model::Vector3 place;
        bool isTouched;
    } cases[] = {
        {"a pin beside the way up", {30.3, 0.2, 160.0}, true},
        {"a pin above the way across", {30.3, -21.8, 35.0 + 150.0 - 1.0}, true},
        {"a pin farther away", {30.3 + 21.0, -19.3, 160.0}, false},
    };
    for (const auto& each : cases) {
        check::CheckOptions options;
        options.scene.obstacles.push_back(pin(each.place));
        const check::PlanReport first = Checked(head, options, PlanByHand());
        check::Surroundings surroundings(head, options.sizes, options.scene);
        const check::PlanReport second = check::CheckPlan(head, options, PlanByHand(), surroundings, &first);
        const bool isFound = std::ranges::any_of(second.findings, [](const check::Finding& finding) {
            return finding.move == 0 && finding.kind == check::FindingKind::TouchesObstacle;
        });
        EXPECT_EQ(each.isTouched, isFound) << each.why;
    }
    check::CheckOptions low;
    low.travel[2].largest = 34.0;
    const check::PlanReport first = Checked(head, {}, PlanByHand());
    check::Surroundings surroundings(head, {}, {});
    const check::PlanReport second = check::CheckPlan(head, low, PlanByHand(), surroundings, &first);
    EXPECT_EQ(0u, second.findings.front().move);
    EXPECT_THAT(NamesOf(second), testing::Contains("travel-limit-exceeded"));
}

TEST(PlanCheck, HasNameSentenceAndRemedyForEveryFinding) {
    std::set<std::string> names;
    for (const check::FindingText& text : check::AllFindingTexts()) {
        EXPECT_TRUE(names.insert(text.name).second) << text.name << " is used twice";
        EXPECT_EQ(std::string::npos, std::string(text.name).find_first_not_of("abcdefghijklmnopqrstuvwxyz-"));
        EXPECT_TRUE(std::string(text.sentence).ends_with('.')) << text.name;
        EXPECT_TRUE(std::string(text.remedy).ends_with('.')) << text.name;
    }
}

} // namespace
