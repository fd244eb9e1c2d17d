#include "tools/motion/Sampling.h"

#include "tools/model/Angles.h"

#include <algorithm>
#include <cmath>

namespace qmv40::motion {

namespace {

constexpr int mostSteps = 10'000;

int StepsOf(const model::Path& path, const Spacing& spacing) {
    const double steps = path.IsArc() ? std::abs(path.Degrees()) / spacing.degrees
                                      : model::Distance(path.Start(), path.End()) / spacing.millimetres;
    if (!(steps < mostSteps)) return mostSteps; // true also for a length that is not a number
    return std::max(1, static_cast<int>(std::ceil(steps)));
}

bool IsOnPegAt(const ExecutedMove& run, double fraction) {
    if (fraction == 0.0 || run.path.IsArc()) return run.before.isOnPeg;
    return run.before.isOnPeg && run.after.isOnPeg; // a straight move takes the cup off the peg at once
}

Sample SampleOf(const model::HeadModel& head, const ExecutedMove& run, double fraction) {
    const model::Vector3 position = run.path.At(fraction);
    const model::HeadAngles angles = run.AnglesAt(fraction);
    const bool isEnd = fraction == 1.0;
    return {fraction,
            position,
            position + head.DriveCup(angles),
            angles,
            isEnd ? run.after.lever : run.before.lever,
            isEnd ? run.after.isOnPeg : IsOnPegAt(run, fraction),
            !isEnd && run.PushesLever() && (fraction > 0.0 || run.before.pushed > 0.0)};
}

} // namespace

std::vector<Sample> SamplesOf(const model::HeadModel& head, const ExecutedMove& move, const Spacing& spacing) {
    std::vector<Sample> samples;
    const int steps = StepsOf(move.path, spacing);
    samples.reserve(static_cast<std::size_t>(steps) + 1);
    for (int i = 0; i <= steps; ++i) samples.push_back(SampleOf(head, move, static_cast<double>(i) / steps));
    return samples;
}

} // namespace qmv40::motion
