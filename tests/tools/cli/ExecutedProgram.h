#pragma once

#include "tests/tools/cli/ToolRun.h"
#include "tools/model/Vector3.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

/// Executes exported programs with code that shares only vectors and angles with the tool, and compares the moves with
/// the plans of `qmv40 move --json`.

/// A straight part of a program, or an arc in one of the machine's planes.
struct Part {
    qmv40::model::Vector3 end;
    bool isArc = false;
    qmv40::model::Vector3 centre{};        ///< of an arc
    qmv40::model::Vector3 clockwiseAxis{}; ///< of an arc: seen from the tip of this axis it turns clockwise
};

/// The parts of each move, by the numbers of plan and move. Move 0 is the way to the plan.
using Program = std::map<std::pair<int, int>, std::vector<Part>>;

Program ReadPoints(const std::string& text);
/// Throws std::runtime_error for every word that it does not know.
Program ReadGcode(const std::string& text);

/// Reads the moves that LinuxCNC's interpreter made of a program, as `./test export` stores them: one call per line,
/// followed by its arguments.
Program ReadCanonicalMoves(const std::string& text);

/// Describes the first difference between a program and the plans, both in millimetres; empty when there is none. The
/// program runs `lifted` above the plans. Each move must end where it is planned to end; each arc must turn the planned
/// way by the planned angle, and its chords must leave it by at most `chord`.
std::string DifferenceFromPlans(const Program& program, const Json& plans, double chord, double lifted = 0.0);
