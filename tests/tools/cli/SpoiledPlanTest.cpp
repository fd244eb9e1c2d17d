// Makes single mistakes in a good plan and expects for each the finding with the name of that mistake.

#include "tests/tools/cli/CheckedPlan.h"
#include "tools/check/Findings.h"

#include <cmath>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <set>

using namespace qmv40;

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

void Add(Json& number, double amount) { number = number.get<double>() + amount; }

void Scale(Json& number, double factor) { number = number.get<double>() * factor; }

void Exchange(Json& moves, const std::string& first, const std::string& second) {
    Json exchanged = Json::object();
    for (const auto& move : moves.items()) {
        const std::string name = move.key() == first ? second : move.key() == second ? first : move.key();
        exchanged[name] = moves[name];
    }
    moves = exchanged;
}

/// Multiplies the distance from `contact` to `place` by `factor`; a negative factor puts `place` on the other side.
void MoveAway(Json& place, const Json& contact, double factor) {
    for (const char* name : {"XPosition", "YPosition", "ZPosition"}) {
        const double at = contact[name].get<double>();
        place[name] = at + (place[name].get<double>() - at) * factor;
    }
}

/// Removes the moves after `last`.
void KeepUpTo(Json& moves, const std::string& last) {
    Json kept = Json::object();
    for (const auto& move : moves.items()) {
        kept[move.key()] = move.value();
        if (move.key() == last) break;
    }
    moves = kept;
}

struct Spoiled {
    const char* why;
    std::function<void(Json& moves)> spoil;
    const char* found;                  ///< the move and the name of the finding
    std::vector<std::string> more = {}; ///< arguments besides geometry and plan
};

const std::vector<Spoiled>& SpoiledPlans() {
    static const std::vector<Spoiled> plans{
        {"an arc with the opposite sign turns B the other way",
         [](Json& m) { Scale(m["MoveToBPosition"]["RotationAngle"], -1.0); }, "10 arc-turns-the-wrong-way"},
        {"A is turned past the head's stop", [](Json& m) { m["MoveToAPosition"]["RotationAngle"] = -100.0; },
         "11 head-angle-out-of-range"},
        {"the arc of the lever turns the other way", [](Json& m) { Scale(m["UnLock"]["RotationAngle"], -1.0); },
         "3 arc-turns-the-wrong-way"},
        {"the turn round the pole has the opposite sign",
         [](Json& m) { Scale(m["RotateToPeg"]["RotationAngle"], -1.0); }, "5 arc-turns-the-wrong-way"},
        {"A is not brought to 0", [](Json& m) { Add(m["IntermediateAPosition"]["RotationAngle"], -15.0); },
         "9 arc-angle-off"},
        {"A turns 15 degrees short of the target", [](Json& m) { Add(m["MoveToAPosition"]["RotationAngle"], 15.0); },
         "11 target-position-missed"},
        {"an arc's centre half a millimetre off", [](Json& m) { Add(m["MoveToBPosition"]["XOrigin"], 0.5); },
         "10 arc-centre-off"},
        {"an arc about a point beside the sphere pulls the cup off the peg",
         [](Json& m) { Add(m["MoveToBPosition"]["XOrigin"], 0.5); }, "10 peg-torn-out"},
        {"after an arc with a wrong centre the next arc starts at a wrong point",
         [](Json& m) { Add(m["MoveToBPosition"]["XOrigin"], 0.5); }, "11 arc-leaves-its-start"},
        {"a rotation vector that is tilted",
         [](Json& m) {
             m["MoveToBPosition"]["iRotationVector"] = 0.6;
             m["MoveToBPosition"]["kRotationVector"] = 0.8;
         },
         "10 arc-axis-tilted"},
        {"a rotation vector of 0.1 instead of 1", [](Json& m) { m["MoveToBPosition"]["kRotationVector"] = 0.1; },
         "10 arc-loses-its-radius"},
        {"a rotation vector of no length", [](Json& m) { m["MoveToBPosition"]["kRotationVector"] = 0.0; },
         "10 not-a-number"},
        {"the turn round the pole goes the long way to the same azimuth",
         [](Json& m) {
             Add(m["RotateToPeg"]["RotationAngle"], m["RotateToPeg"]["RotationAngle"] > 0.0 ? -360.0 : 360.0);
         },
         "5 swing-goes-the-long-way"},
        {"two moves are exchanged", [](Json& m) { Exchange(m, "ApproachPeg", "EngageWithPeg"); },
         "7 moves-out-of-order"},
        {"a move is missing", [](Json& m) { m.erase("DisengageFromLockLever"); }, "the plan move-missing"},
        {"the lever is touched beside its ball", [](Json& m) { Add(m["EngageWithUnLockLever"]["ZPosition"], 1.0); },
         "2 lever-not-touched"},
        {"a lever that is touched beside its ball stays locked",
         [](Json& m) { Add(m["EngageWithUnLockLever"]["ZPosition"], 1.0); }, "3 lever-not-unlocked"},
        {"the lever is not turned at all", [](Json& m) { m["UnLock"]["RotationAngle"] = 0.0; },
         "8 engaged-while-locked"},
        {"the head is indexed although it is locked", [](Json& m) { m["UnLock"]["RotationAngle"] = 0.0; },
         "9 indexed-while-locked"},
        {"the plan starts at another B", [](Json&) {}, "2 wrong-lever", {"--from", "30,45"}},
        {"the cup stops a millimetre short of the peg", [](Json& m) { Add(m["EngageWithPeg"]["YPosition"], -1.0); },
         "8 peg-not-engaged"},
        {"the plan leads to another target", [](Json&) {}, "the plan target-not-reached", {"--to", "45,105"}},
        {"the machine goes round the pole too low",
         [](Json& m) {
             Add(m["DisengageFromUnLockLever"]["ZPosition"], -20.0);
             Add(m["MoveToPegAtSafeZ"]["ZPosition"], -20.0);
         },
         "5 below-safe-height"},
        {"the machine goes round the pole so low that it touches the lever",
         [](Json& m) {
             Add(m["DisengageFromUnLockLever"]["ZPosition"], -71.55);
             Add(m["MoveToPegAtSafeZ"]["ZPosition"], -71.55);
         },
         "5 touches-lever"},
        {"the peg is approached from the far side",
         [](Json& m) { MoveAway(m["ApproachPeg"], m["EngageWithPeg"], -1.0); }, "7 approach-from-the-wrong-side"},
        {"the way to the approach leads through the sphere",
         [](Json& m) {
             MoveAway(m["MoveToPegAtSafeZ"], m["EngageWithPeg"], 0.0);
             Add(m["MoveToPegAtSafeZ"]["ZPosition"], -1.0);
         },
         "7 touches-pole-sphere"},
        {"the approach stops half-way", [](Json& m) { MoveAway(m["ApproachPeg"], m["EngageWithPeg"], 0.5); },
         "7 approach-too-short"},
        {"the approach is beside its line", [](Json& m) { Add(m["ApproachLockLever"]["XPosition"], 1.0); },
         "16 approach-line-missed"},
        {"the machine goes down at a slant", [](Json& m) { Add(m["MoveToLockLeverAtSafeZ"]["XPosition"], 5.0); },
         "16 not-above-the-approach"},
        {"the lever is not pushed to locked", [](Json& m) { m["Lock"]["RotationAngle"] = 0.0; }, "18 lever-not-locked"},
        {"the head is unlocked at the end", [](Json& m) { m["Lock"]["RotationAngle"] = 0.0; },
         "the plan not-locked-at-the-end"},
        {"the plan ends on the peg", [](Json& m) { KeepUpTo(m, "MoveToAPosition"); }, "the plan still-on-the-peg"},
        {"a coordinate that is no number", [](Json& m) { m["DisengageFromPeg"]["YPosition"] = nullptr; },
         "12 not-a-number"},
        {"a machine that cannot go as low as the lever",
         [](Json&) {},
         "1 travel-limit-exceeded",
         {"--z-travel", "-680,0"}},
        {"a machine that cannot go as far as the top of an arc",
         [](Json&) {},
         "3 travel-limit-exceeded",
         {"--z-travel", "-1000,-675"}},
        {"a required clearance of 2.6 mm where the plan leaves 2.5 mm",
         [](Json&) {},
         "1 touches-lever",
         {"--clearance", "2.6"}},
    };
    return plans;
}

TEST(SpoiledPlans, HaveTheFindingOfTheirMistake) {
    const CheckedPlanFile file;
    const Json clean = file.Plan();
    for (const Spoiled& spoiled : SpoiledPlans()) {
        SCOPED_TRACE(spoiled.why);
        const Json document = Edited(clean, spoiled.spoil);
        EXPECT_EQ(4, file.Check(document, spoiled.more).exitCode);
        const Json report = file.Report(document, spoiled.more);
        EXPECT_EQ("findings", report["verdict"].get<std::string>());
        EXPECT_THAT(FindingNames(report["plans"][0]), Contains(spoiled.found));
    }
}

TEST(SpoiledPlans, HaveNoFindingBeforeTheChange) {
    const CheckedPlanFile file;
    EXPECT_EQ(0, file.Check(file.Plan()).exitCode);
    EXPECT_THAT(FindingNames(file.Report(file.Plan())["plans"][0]), IsEmpty());
}

TEST(SpoiledPlans, HaveTheMistakeItselfAsFirstFinding) {
    const struct {
        const char* why;
        std::function<void(Json& moves)> spoil;
        const char* first;
    } cases[] = {
        {"wrong sign", [](Json& m) { Scale(m["MoveToAPosition"]["RotationAngle"], -1.0); },
         "11 arc-turns-the-wrong-way"},
        {"wrong angle", [](Json& m) { Add(m["UnLock"]["RotationAngle"], 15.0); }, "3 arc-angle-off"},
        {"wrong centre", [](Json& m) { Add(m["Lock"]["YOrigin"], 1.0); }, "18 arc-centre-off"},
        {"beside the ball", [](Json& m) { Add(m["EngageWithLockLever"]["YPosition"], 1.0); }, "17 lever-not-touched"},
        {"beside the peg", [](Json& m) { Add(m["EngageWithPeg"]["ZPosition"], 0.1); }, "8 peg-not-engaged"},
    };
    const CheckedPlanFile file;
    for (const auto& each : cases) {
        const Json document = Edited(file.Plan(), each.spoil);
        const auto names = FindingNames(file.Report(document)["plans"][0]);
        ASSERT_FALSE(names.empty()) << each.why;
        EXPECT_EQ(each.first, names.front()) << each.why;
    }
}

TEST(SpoiledPlans, ShowEveryFindingThatOnePlanCanHave) {
    std::set<std::string> missing;
    for (const check::FindingText& text : check::AllFindingTexts()) missing.insert(text.name);
    for (const Spoiled& spoiled : SpoiledPlans()) {
        const std::string found = spoiled.found;
        missing.erase(found.substr(found.find_last_of(' ') + 1));
    }
    EXPECT_THAT(missing, ElementsAre("start-is-not-the-end-before", "stop-unknown", "touches-obstacle"))
        << "these need two plans, a stopped plan, and an obstacle";
}

/// Changes each number of a plan alone: by 1 mm, by 1 degree, or by 0.1 in a rotation vector. Returns the changes about
/// which the check finds nothing.
std::set<std::string> UnnoticedChanges(const CheckedPlanFile& file) {
    std::set<std::string> unnoticed;
    const Json clean = file.Plan();
    const Json records = RecordsOf(clean["plans"][0]["moves"]);
    for (const auto& move : records.items()) {
        for (const auto& field : move.value().items()) {
            const double size = field.key().ends_with("RotationVector") ? 0.1 : 1.0;
            for (const double change : {size, -size}) {
                const Json document = Edited(clean, [&](Json& moves) { Add(moves[move.key()][field.key()], change); });
                const bool isNoticed = file.Check(document).exitCode == 4;
                if (!isNoticed) unnoticed.insert(move.key() + "." + field.key() + (change > 0.0 ? " up" : " down"));
            }
        }
    }
    return unnoticed;
}

TEST(SpoiledPlans, AreFoundForEachWrongNumberThatDoesHarm) {
    const std::set<std::string> harmless{
        // The approach begins farther from the contact, on the same line.
        "ApproachUnLockLever.YPosition down",
        // The origin of the arc is another point on the same axis.
        "UnLock.XOrigin up", "UnLock.XOrigin down", "RotateToPeg.ZOrigin up", "RotateToPeg.ZOrigin down",
        "MoveToBPosition.ZOrigin up", "MoveToBPosition.ZOrigin down", "MoveToAPosition.YOrigin up",
        "MoveToAPosition.YOrigin down", "RotateToLockLever.ZOrigin up", "RotateToLockLever.ZOrigin down",
        "Lock.XOrigin up", "Lock.XOrigin down",
        // Higher than the safe height.
        "DisengageFromUnLockLever.ZPosition up", "MoveToPegAtSafeZ.ZPosition up",
        "DisengageFromPegToSafeZ.ZPosition up", "MoveToLockLeverAtSafeZ.ZPosition up",
        // The last position is 10 mm above the ball; 1 mm in any direction does not matter.
        "DisengageFromLockLever.XPosition up", "DisengageFromLockLever.XPosition down",
        "DisengageFromLockLever.YPosition up", "DisengageFromLockLever.YPosition down",
        "DisengageFromLockLever.ZPosition up", "DisengageFromLockLever.ZPosition down"};
    EXPECT_EQ(harmless, UnnoticedChanges(CheckedPlanFile()));
}

TEST(SpoiledPlans, RoundedToPrintedDecimalsHaveNoFinding) {
    const CheckedPlanFile file;
    const Json document = Edited(file.Plan(), [](Json& moves) {
        for (auto& move : moves.items()) {
            for (auto& field : move.value().items()) {
                const double decimals = field.key().ends_with("RotationVector") ? 1e6 : 1e4;
                field.value() = std::round(field.value().get<double>() * decimals) / decimals;
            }
        }
    });
    EXPECT_THAT(FindingNames(file.Report(document)["plans"][0]), IsEmpty());
}

} // namespace
