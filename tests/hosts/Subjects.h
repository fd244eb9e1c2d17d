#pragma once

/// The subjects of the program; each run tests one. The argument is the number of rounds.

void Refusals(int rounds);
void ControlWords(int rounds);
void Threads(int rounds);
void Cycles(int rounds);
void CallTimes(int rounds);
