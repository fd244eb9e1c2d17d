#pragma once

#include "benchmarks/Suite.h"

/// The subjects of the table. Each stands its data up, holds its peers' answers against ours, and adds what is timed
/// and the rows made of it.

void AddCircle(Suite& suite);
void AddPlaneAndLine(Suite& suite);
void AddPlan(Suite& suite);
void AddMoves(Suite& suite);
void AddAlignment(Suite& suite);
void AddProcess(Suite& suite);
