#pragma once

#include "benchmarks/Suite.h"

#include <stdexcept>

/// Only equal answers are compared: a peer whose answer differs from ours or from the true one ends the program.
inline void Verify(bool condition, const std::string& what) {
    if (!condition) throw std::runtime_error("not the same answer: " + what);
}

/// The subjects of the table. Each prepares its data, compares the answers of its peers, if it has any, with ours, and
/// adds the work to be timed and the rows of the table.

void AddCircle(Suite& suite);
void AddPlaneAndLine(Suite& suite);
void AddPlan(Suite& suite);
void AddMoves(Suite& suite);
void AddAlignment(Suite& suite);
void AddProcess(Suite& suite);
