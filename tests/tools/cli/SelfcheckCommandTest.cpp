#include "tests/tools/cli/ToolRun.h"

#include "tests/support/SettingsFixture.h"
#include "tools/selfcheck/SelfCheckReport.h"
#include "tools/text/Failures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

using namespace qmv40;

namespace {

using testing::HasSubstr;

TEST(Selfcheck, PassesOnThisBuild) {
    const ToolRun run = RunQmv40({"selfcheck"});
    EXPECT_EQ(0, run.exitCode) << run.out << run.err;
    EXPECT_THAT(run.out, HasSubstr("checks passed."));
    EXPECT_EQ("", run.err);
}

TEST(Selfcheck, ComparesTheIndexingArcsTurnedEitherWay) {
    const Json document = RunQmv40({"selfcheck", "--json"}).Document();
    EXPECT_TRUE(document["passed"].get<bool>());
    const auto check = [&](const std::string& what) {
        for (const Json& each : document["checks"]) {
            if (each["what"] == what) return each;
        }
        return Json();
    };
    const double leftHandedMiss = check("left-handed they miss by")["got"][0].get<double>();
    const double rightHandedMiss = check("right-handed they would miss by")["got"][0].get<double>();
    EXPECT_LE(leftHandedMiss, 1e-9);
    EXPECT_GT(rightHandedMiss, 40.0);
    EXPECT_EQ("mm", check("left-handed they miss by")["unit"]);
}

TEST(Selfcheck, UsesTheBuiltInDimensionsDespiteStoredSettings) {
    SettingsFixture store;
    store.SetText("Head Centre To Drive Cup X Offset", "12.5");
    store.SetText("UnLocked To locked Lever Rotation", "90");
    EXPECT_EQ(0, RunQmv40({"selfcheck"}).exitCode);
    const Json after = RunQmv40({"settings", "show", "--json"}).Document();
    EXPECT_EQ(12.5, after["settings"][0]["inForce"]) << "afterwards the stored settings count again";
}

std::vector<selfcheck::SelfCheckGroup> OneCheck(std::vector<double> expected, std::vector<double> got) {
    return {{"Group", "By hand.", {{"a thing", std::move(expected), std::move(got), "mm", 1e-9}}}};
}

TEST(Selfcheck, FailsWhenANumberIsBeyondItsTolerance) {
    const double notANumber = std::numeric_limits<double>::quiet_NaN();
    const struct {
        std::vector<double> expected;
        std::vector<double> got;
        bool isPassed;
        const char* why;
    } cases[] = {
        {{1.0, 2.0, 3.0}, {1.0, 2.0, 3.0}, true, "equal"},
        {{1.0, 2.0, 3.0}, {1.0, 2.0 + 5e-10, 3.0}, true, "within the tolerance"},
        {{1.0, 2.0, 3.0}, {1.0, 2.0, 3.0 + 2e-9}, false, "one coordinate beyond it"},
        {{1.0}, {-1.0}, false, "the wrong sign"},
        {{1.0, 2.0, 3.0}, {1.0, notANumber, 3.0}, false, "not a number"},
        {{notANumber}, {notANumber}, false, "not a number, even if that was expected"},
    };
    for (const auto& each : cases) {
        for (const bool asJson : {false, true}) {
            std::ostringstream out;
            const text::Console console{out, out};
            EXPECT_EQ(each.isPassed, selfcheck::ReportSelfChecks(OneCheck(each.expected, each.got), asJson, console))
                << each.why;
            if (asJson) {
                EXPECT_EQ(each.isPassed, Json::parse(out.str())["passed"].get<bool>()) << each.why;
            } else {
                EXPECT_THAT(out.str(), HasSubstr(each.isPassed ? "All 1 checks passed." : "1 of 1 checks are OFF."))
                    << each.why;
            }
        }
    }
}

TEST(Selfcheck, HasTolerancesThatExcludeTheExactConstants) {
    for (const selfcheck::SelfCheckGroup& group : selfcheck::RunSelfChecks()) {
        for (const selfcheck::SelfCheck& check : group.checks) {
            // pi and 180 / pi. The component must use its own two constants, which differ from them.
            if (check.unit == std::string("rad")) {
                EXPECT_GT(std::abs(check.got[0] - 3.141592653589793), 2 * check.tolerance);
            }
            if (check.unit == std::string("deg/rad")) {
                EXPECT_GT(std::abs(check.got[0] - 57.29577951308232), 2 * check.tolerance);
            }
        }
    }
}

} // namespace
