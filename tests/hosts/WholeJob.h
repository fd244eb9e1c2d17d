#pragma once

#include "hosts/Host.h"

/// Every number and code that a caller gets of all eight methods, called well and badly.
struct Answers {
    RequiredMoves plan, planBack;
    XYZData start, pole;
    double a, b;
    HRESULT refused[4];
};

/// What all eight methods are given, made beforehand: while they are called nothing is computed but by the component.
/// Two jobs with the same number write the same file.
class WholeJob {
public:
    explicit WholeJob(int number) : fileName(number), aPoints(AlignmentPoints::A), bPoints(AlignmentPoints::B) {}

    /// On a new calculator. The answers are all zero bits where nothing was answered.
    void Do(const Server& server, Answers& answers);

private:
    FileName fileName;
    AlignmentPoints aPoints;
    AlignmentPoints bPoints;
};

/// The answers of one job are those of another to the last bit.
bool Same(const Answers& one, const Answers& other);
