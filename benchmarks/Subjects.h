#pragma once

#include "benchmarks/Suite.h"

/// The subjects of the table. Each prepares its data, compares its peers' answers with ours, and adds the work to be
/// timed and the rows of the table.

void AddCircle(Suite& suite);
void AddPlaneAndLine(Suite& suite);
void AddPlan(Suite& suite);
void AddMoves(Suite& suite);
void AddAlignment(Suite& suite);
void AddProcess(Suite& suite);
