#include "tools/view/MoveLevel.h"

#include "tools/check/CheckReport.h"
#include "tools/model/Tolerances.h"

#include <algorithm>

namespace qmv40::view {

const char* NameOf(MoveLevel level) {
    constexpr const char* names[] = {"clear", "tight", "contact", "finding"};
    return names[static_cast<int>(level)];
}

MoveLevel LevelOf(const check::CheckedPlan& checked, std::size_t move) {
    const auto isNamed = [&](const check::Finding& finding) { return finding.move == move; };
    if (move >= checked.report.moves.size() || std::ranges::any_of(checked.report.findings, isNamed)) {
        return MoveLevel::Finding;
    }
    const check::CheckedMove& run = checked.report.moves[move];
    if (*check::ContactOf(run.run.id) != '\0') return MoveLevel::Contact;
    const double clearance = std::min(run.clearance.toPoleSphere, run.clearance.toLevers);
    return clearance < tightClearance - model::lengthTolerance ? MoveLevel::Tight : MoveLevel::Clear;
}

} // namespace qmv40::view
