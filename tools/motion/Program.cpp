#include "tools/motion/Program.h"

#include "tools/motion/Execution.h"
#include "tools/text/Failures.h"

#include <algorithm>
#include <numeric>
#include <string>

namespace qmv40::motion {

namespace {

using model::Path;
using model::Vector3;

/// Puts the steps of a tour one after the other.
class Builder {
public:
    explicit Builder(const ProgramOptions& theOptions) : options(theOptions) {}

    void Add(std::size_t plan, std::span<const plans::PlannedMove> moves) {
        RequireRunnable(plan, moves);
        AddWay(plan, plans::VectorOf(std::get<XYZData>(moves.front().data)));
        for (const plans::PlannedMove& move : moves) AddMove(plan, move);
    }
    std::vector<Step> Result() && { return std::move(steps); }

private:
    static void RequireRunnable(std::size_t plan, std::span<const plans::PlannedMove> moves) {
        const bool hasStart = !moves.empty() && std::holds_alternative<XYZData>(moves.front().data);
        const auto lost = std::ranges::find_if_not(moves, Machine::CanRun);
        if (hasStart && lost == moves.end()) return;
        const std::string reason = hasStart ? std::string(NameOf(lost->id)) + " has a number that is not finite"
                                            : "does not begin with a straight move";
        throw text::InputError{"plan " + std::to_string(plan), {}, reason};
    }

    void AddWay(std::size_t plan, const Vector3& start) {
        if (!position && !options.approachesFromAbove) return;
        const auto [above, across] = CornersOfWay(position.value_or(start), start, options.safeHeight);
        if (position) AddTo(plan, above);
        AddTo(plan, across);
    }

    void AddTo(std::size_t plan, const Vector3& end) { Append(plan, {}, Path::Straight(position.value_or(end), end)); }

    void AddMove(std::size_t plan, const plans::PlannedMove& move) {
        const auto* const target = std::get_if<XYZData>(&move.data);
        Append(plan, move.id, plans::PathOf(move, position ? *position : plans::VectorOf(*target)));
    }

    void Append(std::size_t plan, std::optional<plans::MoveId> move, const Path& path) {
        steps.push_back({plan, move, path.ShiftedBy({0.0, 0.0, options.lift})});
        position = path.End();
    }

    const ProgramOptions& options;
    std::optional<Vector3> position; ///< without the lift
    std::vector<Step> steps;
};

} // namespace

std::vector<Step> ProgramOf(std::span<const plans::Plan> plans, const ProgramOptions& options) {
    Builder builder(options);
    for (std::size_t i = 0; i < plans.size(); ++i) builder.Add(i + 1, plans[i].moves);
    return std::move(builder).Result();
}

std::array<Vector3, 2> CornersOfWay(const Vector3& end, const Vector3& start, double safeHeight) {
    return {Vector3{end.x, end.y, safeHeight}, Vector3{start.x, start.y, safeHeight}};
}

double LengthOf(std::span<const Step> program) {
    return std::accumulate(program.begin(), program.end(), 0.0,
                           [](double sum, const Step& step) { return sum + step.path.Length(); });
}

} // namespace qmv40::motion
