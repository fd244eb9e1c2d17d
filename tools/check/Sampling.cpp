#include "check/Sampling.h"

#include "check/Vectors.h"

#include <algorithm>
#include <cmath>

namespace check {

namespace {

constexpr int mostSteps = 10'000;

int StepsOf(const Path& path, const Spacing& spacing) {
    const double steps = path.IsArc() ? std::abs(path.Degrees()) / spacing.degrees
                                      : Distance(path.Start(), path.End()) / spacing.millimetres;
    if (!(steps < mostSteps)) return mostSteps; // nor for a length that is not a number
    return std::max(1, static_cast<int>(std::ceil(steps)));
}

bool IsOnPegAt(const ExecutedMove& run, double fraction) {
    if (fraction == 0.0 || run.path.IsArc()) return run.before.isOnPeg;
    return run.before.isOnPeg && run.after.isOnPeg; // a straight move leaves it at once
}

Sample SampleOf(const HeadModel& head, const ExecutedMove& run, double fraction) {
    const CMaVector position = run.path.At(fraction);
    const HeadAngles angles = run.AnglesAt(fraction);
    const bool isEnd = fraction == 1.0;
    return {fraction,
            position,
            position + head.DriveCup(angles),
            angles,
            isEnd ? run.after.lever : run.before.lever,
            isEnd ? run.after.isOnPeg : IsOnPegAt(run, fraction)};
}

SweptMove Swept(const HeadModel& head, const CheckedMove& move, const Spacing& spacing) {
    SweptMove swept{move.run.id, move.run.path.IsArc(), move.room, {}};
    const int steps = StepsOf(move.run.path, spacing);
    for (int i = 0; i <= steps; ++i) swept.samples.push_back(SampleOf(head, move.run, static_cast<double>(i) / steps));
    return swept;
}

} // namespace

std::vector<SweptMove> SweptPath(const HeadModel& head, const PlanReport& report, const Spacing& spacing) {
    std::vector<SweptMove> path;
    path.reserve(report.moves.size());
    for (const CheckedMove& move : report.moves) path.push_back(Swept(head, move, spacing));
    return path;
}

} // namespace check
