#pragma once

#include "tools/model/HeadModel.h"
#include "tools/plans/PlannedMove.h"

#include <optional>
#include <span>
#include <string>

/// Judges ways out with code that shares nothing with recovery and check, except the model of the head. From the
/// positions alone it decides what the machine touches, pushes and turns.

struct TrueState {
    qmv40::model::HeadAngles angles;
    qmv40::model::LeverState lever;
    double pushed; ///< degrees by which the lever has been pushed
    bool isOnPeg;
    std::optional<qmv40::model::LeverSide> touchedBall;
    qmv40::model::Vector3 position;
};

/// Two positions or angles within these differences are equal.
struct JudgeTolerance {
    double length; ///< mm
    double angle;  ///< degrees
};

/// Runs the moves from the state and describes the first problem; empty when there is none. The moves must touch only
/// what they must, keep the cup on the peg during arcs and complete each push of a lever. At the end the head must be
/// locked at `angles` and the machine at `end`.
std::string ProblemOfWay(const qmv40::model::HeadModel& head, const TrueState& state,
                         std::span<const qmv40::plans::PlannedMove> moves, const qmv40::model::HeadAngles& angles,
                         const qmv40::model::Vector3& end, const JudgeTolerance& tolerance);
