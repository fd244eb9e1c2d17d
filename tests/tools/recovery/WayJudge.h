#pragma once

#include "tools/model/HeadModel.h"
#include "tools/plans/PlannedMove.h"

#include <optional>
#include <span>
#include <string>

/// A judge of ways out that shares nothing with who makes or checks them: it knows the head, and by their places alone
/// what the machine touches, pushes and turns.

struct TrueState {
    qmv40::model::HeadAngles angles;
    qmv40::model::LeverState lever;
    double pushed; ///< how far the lever is pushed out of its state, degrees
    bool isOnPeg;
    std::optional<qmv40::model::LeverSide> touchedBall;
    qmv40::model::Vector3 position;
};

/// What counts as equal.
struct JudgeTolerance {
    double length; ///< mm
    double angle;  ///< degrees
};

/// Runs the moves from the state. Empty when nothing is touched but what must be, nothing torn and no lever left half
/// way, and the head ends locked at `angles`, the machine at `end`; otherwise what is wrong.
std::string ProblemOfWay(const qmv40::model::HeadModel& head, const TrueState& state,
                         std::span<const qmv40::plans::PlannedMove> moves, const qmv40::model::HeadAngles& angles,
                         const qmv40::model::Vector3& end, const JudgeTolerance& tolerance);
