#pragma once

#include "tests/tools/cli/ToolRun.h"
#include "tools/model/Vector3.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

/// Exported programs, run by readers of the tests' own, and held against the plans of `qmv40 move --json`.

/// A straight part of a program, or an arc in one of the machine's planes.
struct Part {
    qmv40::model::Vector3 end;
    bool isArc = false;
    qmv40::model::Vector3 centre{};     ///< of an arc
    qmv40::model::Vector3 turnedBack{}; ///< of an arc: the axis about which it turns clockwise, seen from its tip
};

/// The parts of each move, by the numbers of plan and move; move 0 is the way to the plan.
using Program = std::map<std::pair<int, int>, std::vector<Part>>;

Program ReadPoints(const std::string& text);
/// Refuses every word that it does not know, by an exception.
Program ReadGcode(const std::string& text);

/// As `./test export` stores what an interpreter makes of G-code: one call a line, its arguments behind it.
Program ReadCanonicalMoves(const std::string& text);

/// What is wrong with a program that shall make the plans, `lifted` higher: a move that ends elsewhere, an arc that is
/// left by more than the chord, turned the wrong way or not as far. Empty when nothing is.
std::string DifferenceFromPlans(const Program& program, const Json& plans, double chord, double lifted = 0.0);
