#pragma once

#include "tools/model/HeadModel.h"
#include "tools/model/Path.h"
#include "tools/plans/PlannedMove.h"

#include <optional>

/// Runs moves one after the other on a model of machine and head. The name of a move does not decide what happens: a
/// lever is unlocked because it was touched and pushed far enough; the head turns because its cup sits on the peg while
/// the machine makes an arc.

namespace qmv40::motion {

struct HeadState {
    model::HeadAngles angles;
    model::LeverState lever;
    bool isOnPeg;                                ///< the drive cup sits on the pole sphere
    std::optional<model::LeverSide> touchedBall; ///< the lever whose ball is at the pole sphere
    double pushed = 0.0; ///< degrees by which that lever is turned already; 0 unless a plan was stopped
};

/// A move that was run.
struct ExecutedMove {
    plans::MoveId id;
    model::Path path; ///< of the machine position
    HeadState before;
    HeadState after;
    double pulledOff; ///< mm: the largest distance of the cup from the peg that it sat on, at four places of an arc

    /// During an arc A and B change in proportion to the angle. Every other change of state happens at the end of the
    /// move.
    model::HeadAngles AnglesAt(double fraction) const;
    /// True for an arc that begins with the pole sphere at a lever's ball.
    bool PushesLever() const { return path.IsArc() && before.touchedBall.has_value(); }
};

/// True when the machine can run all moves of the plan.
bool CanRun(const plans::Plan& plan);

class Machine {
public:
    /// The head is locked at `angles`. `theStart`: the machine position, if it is known. Otherwise the machine begins
    /// at the end of the first move, or, if that is an arc, at the approach position of the lever in reach.
    Machine(const model::HeadModel& theHead, const model::HeadAngles& angles,
            const std::optional<model::Vector3>& theStart);
    /// A machine in the middle of a plan. What happens next depends on lever, cup and angles.
    static Machine InTheMiddle(const model::HeadModel& head, const HeadState& state, const model::Vector3& position);

    /// False for numbers that describe no move: not finite, or an arc about a vector of length 0.
    static bool CanRun(const plans::PlannedMove& move);
    ExecutedMove Run(const plans::PlannedMove& move);

    const HeadState& State() const { return state; }
    /// Empty before the first move when no start was given.
    const std::optional<model::Vector3>& Position() const { return position; }

private:
    model::Path PathOf(const plans::PlannedMove& move) const;
    HeadState After(const XYZData& target) const;
    HeadState After(const ArcData& arc) const;
    double PulledOff(const ExecutedMove& move) const;

    const model::HeadModel& head;
    HeadState state;
    std::optional<model::Vector3> position;
};

} // namespace qmv40::motion
