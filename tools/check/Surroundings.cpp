#include "tools/check/Surroundings.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace qmv40::check {

namespace {

// A stem of this length ends far below any table.
constexpr double stemLength = 2000.0; // mm
// Two moves are taken for the same only when their numbers differ by less: the end of a swing about the pole has
// rounding errors in its last digits. A clearance is lowered by an allowance for rounding that is larger than this
// difference, except when the part begins inside an obstacle.
constexpr double sameNumber = 1e-8; // mm or degrees

} // namespace

Surroundings::Surroundings(const model::HeadModel& theHead, const BallSizes& sizes, const Scene& theScene)
    : head(theHead), scene(theScene), parts(NamesOfParts(theScene.parts)) {
    const auto add = [&](const std::string& name, std::shared_ptr<const obstacles::Solid> solid, bool isPoleSphere) {
        solids.push_back(name);
        placed.push_back({std::move(solid), isPoleSphere});
    };
    const model::Vector3 pole = head.PoleSphere();
    const model::Vector3 foot = pole - model::Vector3{0.0, 0.0, stemLength};
    add(poleSphereName, std::make_shared<obstacles::Rod>(pole, pole, sizes.poleSphereRadius), true);
    add("stem", std::make_shared<obstacles::Rod>(pole, foot, scene.stemDiameter / 2.0), true);
    if (scene.table) add("table", std::make_shared<obstacles::Table>(*scene.table), false);
    for (const obstacles::Obstacle& obstacle : scene.obstacles) add(obstacle.name, obstacle.solid, false);
    smallest.resize(parts.size() * solids.size(), std::numeric_limits<double>::infinity());
}

const PartClearances& Surroundings::Of(const motion::ExecutedMove& move) {
    const Key key = KeyOf(move);
    auto found = known.find(key);
    if (found == known.end()) found = known.emplace(key, Measured(move)).first;
    return found->second;
}

void Surroundings::ComputeOnlySmallest(double theRequired) { required = theRequired; }

Surroundings::Key Surroundings::KeyOf(const motion::ExecutedMove& move) {
    const model::HeadAngles &before = move.before.angles, &after = move.after.angles;
    const double touched = move.before.touchedBall ? 1.0 + static_cast<double>(*move.before.touchedBall) : 0.0;
    Key key{};
    auto next = key.begin();
    const auto add = [&](double number) { *next++ = std::round(number / sameNumber); };
    for (const model::Vector3& place : {move.path.Start(), move.path.At(0.5), move.path.End()}) {
        for (const std::size_t axis : {0U, 1U, 2U}) add(place[axis]);
    }
    for (const double number : {before.a, before.b, after.a, after.b, touched, static_cast<double>(move.before.lever),
                                move.path.Degrees(), move.path.Radius()}) {
        add(number);
    }
    return key;
}

double Surroundings::EnoughFor(std::size_t part, std::size_t solid) const {
    if (!required) return std::numeric_limits<double>::infinity();
    return std::max(*required, smallest[part * solids.size() + solid]);
}

PartClearances Surroundings::Measured(const motion::ExecutedMove& move) {
    PartClearances clearances;
    const std::vector<PartInMove> moving = PartsOf(move, head, scene.parts);
    for (std::size_t part = 0; part < moving.size(); ++part) {
        for (std::size_t solid = 0; solid < placed.size(); ++solid) {
            if (moving[part].passesPoleSphere && placed[solid].isPoleSphere) continue;
            const double atLeast =
                obstacles::ClearanceOf(moving[part].moving, *placed[solid].solid, EnoughFor(part, solid));
            double& least = smallest[part * solids.size() + solid];
            least = std::min(least, atLeast);
            clearances.push_back({part, solid, atLeast});
        }
    }
    return clearances;
}

std::optional<double> LowestTip(const motion::ExecutedMove& move, const model::HeadModel& head,
                                const PartSizes& sizes) {
    if (!sizes.stylus) return std::nullopt;
    return obstacles::ClearanceOf(PartsOf(move, head, sizes).back().moving, obstacles::Table(0.0));
}

} // namespace qmv40::check
