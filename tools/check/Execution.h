#pragma once

#include "check/HeadModel.h"
#include "check/Path.h"
#include "check/PlannedMove.h"

#include <optional>

/// Runs moves, one after the other, on a model of machine and head. What a move is called has no say in what happens:
/// a lever is unlocked because it was touched and pushed far enough, the head turns because its cup sits on the peg
/// while the machine makes an arc.

namespace check {

struct HeadState {
    HeadAngles angles;
    LeverState lever;
    bool isOnPeg;                         ///< the drive cup sits on the pole sphere
    std::optional<LeverSide> touchedBall; ///< the machine stands at a lever's ball
};

/// A move as it was made.
struct ExecutedMove {
    MoveId id;
    Path path; ///< of the machine's position, where the head centre is
    HeadState before;
    HeadState after;
    double pulledOff; ///< how far the cup strayed from the peg that it sat on, at most

    /// The head turns evenly during an arc; every other change of state comes at the end of the move.
    HeadAngles AnglesAt(double fraction) const;
};

class Machine {
public:
    /// The head stands at `angles`, locked. `theStart`: where the machine is, if that is known; else it begins at the
    /// end of the first move.
    Machine(const HeadModel& theHead, const HeadAngles& angles, const std::optional<CMaVector>& theStart);

    /// Numbers that make no move (not finite, or an arc about a vector of no length) cannot be run.
    static bool CanRun(const PlannedMove& move);
    ExecutedMove Run(const PlannedMove& move);

    const HeadState& State() const { return state; }
    /// None until the first move was run, if it was not given.
    const std::optional<CMaVector>& Position() const { return position; }

private:
    Path PathOf(const XYZData& target) const;
    Path PathOf(const ArcData& arc) const;
    HeadState After(const XYZData& target) const;
    HeadState After(const ArcData& arc) const;
    double PulledOff(const ExecutedMove& move) const;

    const HeadModel& head;
    HeadState state;
    std::optional<CMaVector> position;
};

/// The arc's direction with unit length; its own length is for others to judge.
CMaVector AxisOf(const ArcData& arc);
/// How far an arc turns right-handed about its rotation vector, degrees. Arcs are given left-handed.
double RightHandedDegrees(const ArcData& arc);

} // namespace check
