#include "check/Sampling.h"

#include <algorithm>
#include <cmath>

namespace check {

namespace {

int StepsOf(const Path& path, double degreesBetween) {
    if (!path.IsArc()) return 1;
    return std::max(1, static_cast<int>(std::ceil(std::abs(path.Degrees()) / degreesBetween)));
}

Sample SampleOf(const HeadModel& head, const ExecutedMove& run, double fraction) {
    const CMaVector position = run.path.At(fraction);
    const HeadAngles angles = run.AnglesAt(fraction);
    const HeadState& state = fraction < 1.0 ? run.before : run.after;
    return {fraction, position, position + head.DriveCup(angles), angles, state.lever, state.isOnPeg};
}

SweptMove Swept(const HeadModel& head, const CheckedMove& move, double degreesBetween) {
    SweptMove swept{move.run.id, move.run.path.IsArc(), move.room, {}};
    const int steps = StepsOf(move.run.path, degreesBetween);
    for (int i = 0; i <= steps; ++i) swept.samples.push_back(SampleOf(head, move.run, static_cast<double>(i) / steps));
    return swept;
}

} // namespace

std::vector<SweptMove> SweptPath(const HeadModel& head, const PlanReport& report, double degreesBetween) {
    std::vector<SweptMove> path;
    for (const CheckedMove& move : report.moves) path.push_back(Swept(head, move, degreesBetween));
    return path;
}

} // namespace check
