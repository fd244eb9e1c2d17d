#pragma once

#include "hosts/Host.h"

/// All numbers and codes that a caller gets from all eight methods, with right and wrong calls.
struct Answers {
    RequiredMoves plan, planBack;
    XYZData start, pole;
    double a, b;
    HRESULT refused[4];
};

/// The arguments of all eight methods, prepared before: during the calls only the component computes.
/// Two jobs with the same number write the same file.
class WholeJob {
public:
    explicit WholeJob(int number) : fileName(number), aPoints(AlignmentPoints::A), bPoints(AlignmentPoints::B) {}

    /// Runs with a new calculator. Results that no call has written are zero.
    void Do(const Server& server, Answers& answers);

private:
    FileName fileName;
    AlignmentPoints aPoints;
    AlignmentPoints bPoints;
};

/// Whether the results of two jobs are equal to the last bit.
bool Same(const Answers& one, const Answers& other);
