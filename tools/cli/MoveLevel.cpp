#include "cli/MoveLevel.h"

#include "check/Tolerances.h"
#include "cli/CheckReport.h"

#include <algorithm>

const char* NameOf(MoveLevel level) {
    constexpr const char* names[] = {"clear", "tight", "contact", "finding"};
    return names[static_cast<int>(level)];
}

MoveLevel LevelOf(const CheckedPlan& checked, std::size_t move) {
    const auto isNamed = [&](const check::Finding& finding) { return finding.move == move; };
    if (move >= checked.report.moves.size() || std::ranges::any_of(checked.report.findings, isNamed)) {
        return MoveLevel::Finding;
    }
    const check::CheckedMove& run = checked.report.moves[move];
    if (*ContactOf(run.run.id) != '\0') return MoveLevel::Contact;
    const double room = std::min(run.room.toPoleSphere, run.room.toLevers);
    return room < tightRoom - check::lengthTolerance ? MoveLevel::Tight : MoveLevel::Clear;
}
