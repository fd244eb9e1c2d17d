#include "tools/cli/StopQuestion.h"

#include "tools/cli/Options.h"
#include "tools/recovery/Journal.h"

namespace qmv40::cli {

namespace {

using Kind = recovery::KnownMove::Kind;

std::string ReadMoveNumber(const std::string& value, Kind kind, recovery::KnownMove& known) {
    const bool isBeforeAll = kind == Kind::After && value == "0";
    const auto number = isBeforeAll ? std::optional<std::size_t>(0) : plans::ParseMoveNumber(value);
    if (!number) return "'" + value + "' is no number of a move, " + (kind == Kind::After ? "0" : "1") + " to 19";
    known = {kind, *number};
    return "";
}

} // namespace

Option AddStopQuestion(Command& command, StopQuestion& question) {
    command.AddValue("--during", "N", "The move that was under way, 1 to 19", [&question](const std::string& value) {
        return ReadMoveNumber(value, Kind::During, question.known);
    });
    command
        .AddValue("--after", "N", "The last move that was finished, 1 to 19; 0: none was begun",
                  [&question](const std::string& value) { return ReadMoveNumber(value, Kind::After, question.known); })
        .Exclude("--during");
    command.AddText("--journal", question.journal, "FILE", "Take the move from the journal that the program wrote")
        .Exclude("--during")
        .Exclude("--after");
    AddPositiveLengthOption(command, "--position-error", "MM", "How exact the position is. 0.05 mm unless given",
                            question.positionError);
    return AddPointOption(command, "--standing", "Where the machine stands now, mm", question.standing);
}

recovery::Question QuestionAbout(const StopQuestion& question, const recovery::StoppedPlan& plan,
                                 const check::CheckOptions& options, const text::Console& console) {
    recovery::Question asked{*question.standing, question.known, question.positionError, options};
    if (question.journal.empty()) return asked;
    const recovery::Journal journal = recovery::ReadJournal(question.journal, plan.UnderWay().from, plan.UnderWay().to);
    asked.known = journal.known;
    if (journal.isTorn) console.err << question.journal << ": the last line is torn; the line before it counts\n";
    return asked;
}

} // namespace qmv40::cli
