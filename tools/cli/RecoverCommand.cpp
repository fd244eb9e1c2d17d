#include "tools/check/HeadFile.h"
#include "tools/cli/AssumptionOptions.h"
#include "tools/cli/Commands.h"
#include "tools/cli/Options.h"
#include "tools/cli/StopQuestion.h"
#include "tools/text/Failures.h"
#include "tools/text/Json.h"

namespace qmv40::cli {

namespace {

struct RecoverOptions : CommonOptions {
    GeometryOption geometry;
    model::HeadAngles from{};
    std::vector<model::HeadAngles> targets;
    StopQuestion question;
    AssumptionOptions assumptions;
};

const model::HeadAngles& OnlyTarget(const RecoverOptions& options) {
    if (options.targets.size() == 1) return options.targets.front();
    throw text::UsageError{"recover: give one --to, that of the plan that was under way"};
}

void Run(const RecoverOptions& options, const text::Console& console) {
    const model::HeadAngles& target = OnlyTarget(options);
    [[maybe_unused]] const SettingsInUse settings(options, console);
    const settings::GeometryFile geometry = ReadGeometryFile(options.geometry, console);
    const model::HeadModel head = check::HeadModelOf(geometry.Numbers());
    const recovery::StoppedPlan plan(head, recovery::PlansFor(geometry.Name(), options.from, target));
    const recovery::Question question = QuestionAbout(options.question, plan, options.assumptions.Read(), console);
    const recovery::Answered answered{plan, question, plan.Answer(question)};
    if (options.json) {
        text::PrintDocument("recover", recovery::RecoveryJson(answered), console.out);
    } else {
        recovery::PrintRecovery(answered, console);
    }
    if (!answered.recovery.HasBothWays()) throw CommandEnded{exitFindings};
}

constexpr const char* recoverFooter =
    "Examples:\n"
    "  qmv40 recover --geometry head.ini --from 0,0 --to 45,90 --standing 430.5,-195.6,-643.5 --during 10\n"
    "  qmv40 recover --geometry head.ini --from 0,0 --to 45,90 --standing 430.5,-195.6,-643.5 --journal run.txt\n"
    "\n"
    "Move nothing before you have read docs/recovery.md. The answer gives the state of lever, cup, A and B, and two\n"
    "ways out: the rest of the plan, and the way back to its start. Both were run on the model from where the machine\n"
    "stands; one that is not safe is left out, and the text says why. When the position fits more than one state, or\n"
    "none, the state is unknown and the text says what to look at. Exit code 4: unknown, or a way out is missing.";

} // namespace

void AddRecoverCommand(Command tool) {
    auto [command, options] = tool.AddCommand<RecoverOptions>(
        "recover", "Say where a stopped plan left the head, and how to get out", recoverFooter, Run);
    AddGeometryOption(command, options.geometry);
    AddAnglesOption(command, "--from", options.from).Require();
    AddToOption(command, options.targets).Require();
    AddStopQuestion(command, options.question).Require();
    AddAssumptionOptions(command, options.assumptions);
    AddCommonOptions(command, options);
}

} // namespace qmv40::cli
