#pragma once

/// What the program tries, one subject a run. The number is that of the rounds.

void Refusals(int rounds);
void ControlWords(int rounds);
void Threads(int rounds);
void Cycles(int rounds);
void CallTimes(int rounds);
