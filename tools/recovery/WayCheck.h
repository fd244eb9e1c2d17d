#pragma once

#include "tools/check/Findings.h"
#include "tools/check/PlanCheck.h"
#include "tools/motion/Execution.h"

#include <optional>
#include <string>
#include <vector>

/// Runs a way out on the model of head and machine, from exactly the state in which the plan was stopped.

namespace qmv40::recovery {

/// A move of a way out.
struct WayMove {
    plans::PlannedMove move;
    /// The move whose contact it makes or leaves. A move back from a lever's ball has the name of the place to which it
    /// leads, but touches the ball where it begins.
    plans::MoveId contact = move.id;
};

struct WayOut {
    std::vector<WayMove> moves;
    model::HeadAngles angles; ///< of the head after it
    model::Vector3 end;       ///< of the machine
};

/// Head and machine at the stop.
struct Stopped {
    motion::HeadState head;
    model::Vector3 position;
};

/// The first finding of the way; it must then not be run. Empty: the head ends locked at `angles`, the machine at
/// `end`, and nothing is touched that need not be touched.
std::optional<check::Finding> FirstFinding(const model::HeadModel& head, const check::CheckOptions& options,
                                           const Stopped& stopped, const WayOut& way);

} // namespace qmv40::recovery
