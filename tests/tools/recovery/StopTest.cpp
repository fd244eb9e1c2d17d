#include "tools/recovery/RecoveryReport.h"

#include "StopTrials.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace {

using namespace qmv40;
using recovery::KnownMove;
using recovery::State;

class Stopped : public testing::Test {
protected:
    recovery::StoppedPlan Plan(const model::HeadAngles& from, const model::HeadAngles& to) {
        return {head, recovery::PlansFor(name, from, to)};
    }
    static recovery::Question Asked(const model::Vector3& standing, const KnownMove& known = {}) {
        recovery::Question question;
        question.standing = standing;
        question.known = known;
        return question;
    }
    static std::string WhyOf(const recovery::StoppedPlan& plan, const recovery::Question& question) {
        return recovery::Why({plan, question, plan.Answer(question)});
    }

    const TemporaryFolder folder;
    const std::string name = Written(folder.Name("head.ini"));
    const model::HeadModel head = TrialHead();

private:
    static std::string Written(const std::string& fileName) {
        WriteTrialGeometry(fileName);
        return fileName;
    }
};

constexpr KnownMove During(std::size_t number, bool isEndAnnounced = false) {
    return {KnownMove::Kind::During, number, isEndAnnounced};
}
constexpr KnownMove After(std::size_t number) { return {KnownMove::Kind::After, number}; }

TEST_F(Stopped, InA360DegreeTurnOfBNeedsTheMove) {
    const auto plan = Plan({15, -180}, {15, 180});
    const model::Vector3 place = plan.Paths().PathOf(10).Start();
    const struct {
        KnownMove known;
        State state;
        double b;
        const char* why;
    } cases[] = {
        {{}, State::Unknown, 0.0, "the turn starts and ends at this position"},
        {During(10), State::Unknown, 0.0, "the turn may not have begun, or it may be complete"},
        {After(9), State::OnPeg, -180.0, "the turn had not begun"},
        {After(10), State::OnPeg, 180.0, "the turn had ended"},
        {During(10, true), State::OnPeg, 180.0, "the journal was just announcing its end"},
    };
    for (const auto& each : cases) {
        const recovery::Recovery answer = plan.Answer(Asked(place, each.known));
        EXPECT_EQ(each.state, answer.stop.state) << each.why;
        if (answer.stop.state == State::OnPeg) {
            EXPECT_EQ(each.b, answer.stop.Place().angles.b) << each.why;
        }
        EXPECT_EQ(each.state == State::Unknown, answer.stop.hasSeveralOrientations) << each.why;
    }
}

TEST_F(Stopped, AtTheEndOfAMoveIsInTheStateOfTheNext) {
    const auto plan = Plan({30, 45}, {75, -120});
    const struct {
        std::size_t number;
        State inside;
        State atEnd;
    } cases[] = {{2, State::Untouched, State::Unlocking}, {3, State::Unlocking, State::Unlocked},
                 {8, State::Unlocked, State::OnPeg},      {11, State::OnPeg, State::Indexed},
                 {17, State::Indexed, State::Locking},    {18, State::Locking, State::Locked}};
    for (const auto& each : cases) {
        const model::Path& path = plan.Paths().PathOf(each.number);
        EXPECT_EQ(each.inside, plan.Answer(Asked(path.At(0.9), During(each.number))).stop.state);
        EXPECT_EQ(each.atEnd, plan.Answer(Asked(path.End(), During(each.number))).stop.state);
        const model::Vector3 almost = path.At(1.0 - 0.02 / path.Length());
        EXPECT_EQ(State::Unknown, plan.Answer(Asked(almost, During(each.number))).stop.state)
            << "the move may have ended";
        EXPECT_EQ(each.atEnd, plan.Answer(Asked(almost, During(each.number, true))).stop.state)
            << "the journal announces the end";
        EXPECT_EQ(each.inside, plan.Answer(Asked(path.At(0.5), During(each.number, true))).stop.state)
            << "the journal announces the end, but the position is half-way";
    }
}

TEST_F(Stopped, OffItsMoveIsUnknownAndSaysHowFar) {
    const auto plan = Plan({30, 45}, {75, -120});
    const model::Vector3 off = plan.Paths().PathOf(7).At(0.5) + model::Vector3{0.6, 0.8, 0.0};
    for (const KnownMove& known : {KnownMove{}, During(7), After(6)}) {
        const std::string why = WhyOf(plan, Asked(off, known));
        EXPECT_NE(std::string::npos, why.find("1.0000 mm off")) << why;
        EXPECT_NE(std::string::npos, why.find("move 7 (ApproachPeg)")) << why;
    }
    const std::string why = WhyOf(plan, Asked(plan.Paths().PathOf(3).At(0.5), During(12)));
    EXPECT_NE(std::string::npos, why.find("move 12 (DisengageFromPeg)")) << "the position is that of move 3: " << why;
}

TEST_F(Stopped, IsOnAMoveWithinThePositionError) {
    const auto plan = Plan({30, 45}, {75, -120});
    recovery::Question question = Asked(plan.Paths().PathOf(7).At(0.5) + model::Vector3{0.06, 0.0, 0.0});
    EXPECT_EQ(State::Unknown, plan.Answer(question).stop.state);
    question.positionError = 0.061;
    EXPECT_EQ(State::Unlocked, plan.Answer(question).stop.state);
}

TEST_F(Stopped, InItsFirstMoveMayBeAnywhere) {
    const auto plan = Plan({0, 0}, {45, 90});
    const model::Vector3 pole = head.PoleSphere();
    for (const model::Vector3& offset : {model::Vector3{-200.0, 150.0, 90.0}, model::Vector3{60.0, -90.0, -50.0},
                                         model::Vector3{-60.0, 40.0, -36.0}}) {
        const recovery::Recovery answer = plan.Answer(Asked(pole + offset, During(1)));
        EXPECT_EQ(State::Untouched, answer.stop.state);
        EXPECT_TRUE(answer.HasBothWays()) << "the way goes above the levers when a straight line would touch one";
    }
}

TEST_F(Stopped, WithALeverHalfPushedCompletesThePush) {
    const auto plan = Plan({30, 45}, {75, -120});
    for (const std::size_t number : {3u, 18u}) {
        const recovery::Recovery answer = plan.Answer(Asked(plan.Paths().PathOf(number).At(0.25), During(number)));
        const auto& planned = std::get<ArcData>(plan.UnderWay().moves[number - 1].data);
        for (const auto& way : {answer.finish, answer.backOut}) {
            const plans::PlannedMove& first = way->way.moves.front().move;
            EXPECT_EQ(number - 1, IndexOf(first.id));
            EXPECT_NEAR(0.75 * planned.RotationAngle, std::get<ArcData>(first.data).RotationAngle, 1e-9);
        }
    }
}

TEST_F(Stopped, HasInstructionsByHandWhenNoWayIsSafe) {
    const auto plan = Plan({30, 45}, {75, -120});
    recovery::Question question = Asked(plan.Paths().PathOf(7).At(0.5), During(7));
    question.check.requiredClearance = 500.0;
    const recovery::Recovery answer = plan.Answer(question);
    EXPECT_EQ(State::Unlocked, answer.stop.state);
    const text::Json document = recovery::RecoveryJson({plan, question, answer});
    EXPECT_EQ(nullptr, document.Find("finish"));
    EXPECT_EQ(nullptr, document.Find("backOut"));
    const std::string why = *document.Find("why")->Text();
    EXPECT_NE(std::string::npos, why.find("`finish` is not safe, at move 7 (ApproachPeg): touches-")) << why;
    EXPECT_NE(std::string::npos, why.find("By hand:")) << why;
}

TEST_F(Stopped, NamesTheCallThatMustFollowTheWay) {
    const auto plan = Plan({30, 45}, {75, -120});
    const std::string why = WhyOf(plan, Asked(plan.Paths().PathOf(7).At(0.5), During(7)));
    EXPECT_NE(std::string::npos, why.find("After `finish`: SetCurrentHeadPosition(75, -120).")) << why;
    EXPECT_NE(std::string::npos, why.find("After `backOut`: SetCurrentHeadPosition(30, 45).")) << why;
}

} // namespace
