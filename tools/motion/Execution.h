#pragma once

#include "tools/model/HeadModel.h"
#include "tools/motion/Path.h"
#include "tools/plans/PlannedMove.h"

#include <optional>

/// Runs moves, one after the other, on a model of machine and head. What a move is called has no say in what happens:
/// a lever is unlocked because it was touched and pushed far enough, the head turns because its cup sits on the peg
/// while the machine makes an arc.

namespace qmv40::motion {

struct HeadState {
    model::HeadAngles angles;
    model::LeverState lever;
    bool isOnPeg;                                ///< the drive cup sits on the pole sphere
    std::optional<model::LeverSide> touchedBall; ///< the machine stands at a lever's ball
    double pushed = 0.0; ///< how far that lever is pushed out of its state, degrees; only where a plan was stopped
};

/// A move as it was made.
struct ExecutedMove {
    plans::MoveId id;
    Path path; ///< of the machine's position, where the head centre is
    HeadState before;
    HeadState after;
    double pulledOff; ///< how far the cup strayed from the peg that it sat on, at most

    /// The head turns evenly during an arc; every other change of state comes at the end of the move.
    model::HeadAngles AnglesAt(double fraction) const;
};

class Machine {
public:
    /// The head stands at `angles`, locked. `theStart`: where the machine is, if that is known; else it begins at the
    /// end of the first move.
    Machine(const model::HeadModel& theHead, const model::HeadAngles& angles,
            const std::optional<model::Vector3>& theStart);
    /// A machine that stands somewhere in the middle of a plan: what comes next depends on lever, cup and angles.
    static Machine InTheMiddle(const model::HeadModel& head, const HeadState& state, const model::Vector3& position);

    /// Numbers that make no move (not finite, or an arc about a vector of no length) cannot be run.
    static bool CanRun(const plans::PlannedMove& move);
    ExecutedMove Run(const plans::PlannedMove& move);

    const HeadState& State() const { return state; }
    /// None until the first move was run, if it was not given.
    const std::optional<model::Vector3>& Position() const { return position; }

private:
    Path PathOf(const plans::PlannedMove& move) const;
    HeadState After(const XYZData& target) const;
    HeadState After(const ArcData& arc) const;
    double PulledOff(const ExecutedMove& move) const;

    const model::HeadModel& head;
    HeadState state;
    std::optional<model::Vector3> position;
};

using plans::AxisOf;
using plans::OriginOf;
using plans::RightHandedDegrees;
using plans::RotationVectorOf;
using plans::VectorOf;

} // namespace qmv40::motion
