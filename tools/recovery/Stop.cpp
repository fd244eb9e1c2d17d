#include "tools/recovery/Stop.h"

#include "tools/check/PlanCheck.h"
#include "tools/model/Angles.h"
#include "tools/model/Tolerances.h"

#include <algorithm>
#include <cmath>

namespace qmv40::recovery {

namespace {

constexpr std::size_t lastMove = plans::moveCount;

// Places and angles that differ by less are the same
constexpr double samePlace = 1e-6; // mm
constexpr double sameAngle = 1e-6; // degrees

bool IsAWholeTurn(const model::Path& path, double positionError) {
    return std::abs(path.Degrees()) > 180.0 && model::Distance(path.Start(), path.End()) <= 2.0 * positionError;
}

Fit FitAt(const PlanPaths& paths, const Progress& place, const model::Vector3& standing) {
    return {place, model::Distance(paths.PathOf(place.number).At(place.fraction), standing), paths.AnglesAt(place)};
}

Fit NearestFit(const PlanPaths& paths, std::size_t number, const model::Vector3& standing) {
    return FitAt(paths, {number, paths.PathOf(number).NearestFraction(standing)}, standing);
}

/// Finds the places on the given moves that agree with the machine position.
class Search {
public:
    Search(const PlanPaths& thePaths, const model::Vector3& theStanding, double theError)
        : paths(thePaths), standing(theStanding), error(theError) {}

    void Look(std::size_t number) {
        const Fit fit = NearestFit(paths, number, standing);
        if (!isAnySeen || fit.distance < stop.nearest.distance) stop.nearest = fit;
        isAnySeen = true;
        Take(fit);
        // A turn of 360 degrees ends where it began, so the position does not tell its ends apart.
        if (!IsAWholeTurn(paths.PathOf(number), error)) return;
        for (const double end : {0.0, 1.0}) {
            if (std::abs(fit.place.fraction - end) > 0.5) Take(FitAt(paths, {number, end}, standing));
        }
    }
    void Take(const Fit& fit) {
        if (fit.distance <= error) stop.fits.push_back(fit);
    }

    Stop Result() && {
        if (stop.fits.empty()) return std::move(stop);
        ChooseBest();
        stop.hasSeveralOrientations = HaveOneState() && !HaveOneOrientation();
        if (HaveOneState() && HaveOneOrientation()) stop.state = stop.Place().StateThere();
        return std::move(stop);
    }

private:
    /// The closest place. Of places that are equally close, the latest: the way to the target is shortest from there.
    void ChooseBest() {
        for (std::size_t i = 1; i < stop.fits.size(); ++i) {
            if (stop.fits[i].distance <= stop.fits[stop.best].distance + samePlace) stop.best = i;
        }
    }

    bool HaveOneState() const {
        return std::ranges::all_of(stop.fits,
                                   [&](const Fit& fit) { return fit.StateThere() == stop.fits.front().StateThere(); });
    }

    bool HaveOneOrientation() const {
        return std::ranges::all_of(stop.fits,
                                   [&](const Fit& fit) { return IsSameOrientation(stop.fits.front(), fit); });
    }

    /// True when A and B are the same at both places, or when the path of the plan from one to the other is at most
    /// four position errors long, as at the corner of two arcs. From A = 39 degrees on, one place can belong to two
    /// orientations.
    bool IsSameOrientation(const Fit& first, const Fit& second) const {
        return check::LargestDifference(first.angles, second.angles) <= sameAngle ||
               paths.LengthBetween(first.place, second.place) <= 4.0 * error;
    }

    const PlanPaths& paths;
    const model::Vector3& standing;
    double error;
    Stop stop;
    bool isAnySeen = false;
};

Stop KnownPlace(const Fit& fit) { return {fit.StateThere(), {fit}, 0, fit, false}; }

Stop AtStartOf(const PlanPaths& paths, std::size_t number, const model::Vector3& standing) {
    return KnownPlace(FitAt(paths, {number, 0.0}, standing));
}

/// Where the first move began is not known, so that every place agrees with it.
Stop InFirstMove(const PlanPaths& paths, const model::Vector3& standing) {
    return KnownPlace({{1, paths.PathOf(1).NearestFraction(standing)}, 0.0, paths.AnglesAt({1, 0.0})});
}

Stop During(const PlanPaths& paths, const KnownMove& known, const model::Vector3& standing, double error) {
    const model::Path& path = paths.PathOf(known.number);
    const double toEnd = model::Distance(path.End(), standing);
    const bool leadsOn = known.number < lastMove;
    if (leadsOn && known.isEndAnnounced && toEnd <= error) return AtStartOf(paths, known.number + 1, standing);
    // A move of length 0 ends where it begins. A whole turn does so too, but with another B.
    const bool hasAnEnd = leadsOn && path.Length() > error && !IsAWholeTurn(path, error);
    if (hasAnEnd && toEnd <= model::lengthTolerance) return AtStartOf(paths, known.number + 1, standing);
    if (known.number == 1) return InFirstMove(paths, standing);
    Search search(paths, standing, error);
    search.Look(known.number);
    // Within the position error of the end, the contact may be made already, or the lever pushed all the way.
    const bool changesState = leadsOn && StateInMove(known.number) != StateInMove(known.number + 1);
    if (hasAnEnd && changesState) search.Take(FitAt(paths, {known.number + 1, 0.0}, standing));
    return std::move(search).Result();
}

Stop After(const PlanPaths& paths, std::size_t number, const model::Vector3& standing, double error) {
    if (number == 0) return InFirstMove(paths, standing);
    const Progress here = number < lastMove ? Progress{number + 1, 0.0} : Progress{lastMove, 1.0};
    const Fit fit = FitAt(paths, here, standing);
    if (fit.distance <= error) return KnownPlace(fit);
    Stop jogged;
    jogged.nearest = fit;
    return number < lastMove ? During(paths, {KnownMove::Kind::During, number + 1}, standing, error) : jogged;
}

} // namespace

model::HeadAngles ReadableAngles(const model::HeadAngles& angles) {
    constexpr double steps = 1e4; // in a degree
    // Adding zero removes the sign of a negative zero.
    return {std::round(angles.a * steps) / steps + 0.0, std::round(angles.b * steps) / steps + 0.0};
}

const char* NameOf(State state) {
    constexpr std::array names{"untouched", "unlocking", "unlocked", "on-peg",
                               "indexed",   "locking",   "locked",   "unknown"};
    return names[static_cast<std::size_t>(state)];
}

State StateInMove(std::size_t number) {
    constexpr std::array lastMoves{
        std::pair{std::size_t{2}, State::Untouched}, std::pair{std::size_t{3}, State::Unlocking},
        std::pair{std::size_t{8}, State::Unlocked},  std::pair{std::size_t{11}, State::OnPeg},
        std::pair{std::size_t{17}, State::Indexed},  std::pair{std::size_t{18}, State::Locking}};
    for (const auto& [last, state] : lastMoves) {
        if (number <= last) return state;
    }
    return State::Locked;
}

PlanPaths::PlanPaths(const plans::Plan& plan, const model::Vector3& start) : from(plan.from), to(plan.to) {
    model::Vector3 position = start;
    for (const plans::PlannedMove& move : plan.moves) {
        paths.push_back(plans::PathOf(move, position));
        position = paths.back().End();
    }
}

model::HeadAngles PlanPaths::AnglesAt(const Progress& place) const {
    const auto [number, fraction] = place;
    if (number < 9) return from;
    if (number == 9) return {from.a * (1.0 - fraction), from.b};
    if (number == 10) return {0.0, from.b + (to.b - from.b) * fraction};
    if (number == 11) return {to.a * fraction, to.b};
    return to;
}

double PlanPaths::LengthBetween(const Progress& first, const Progress& second) const {
    if (first.number > second.number) return LengthBetween(second, first);
    double length = -first.fraction * PathOf(first.number).Length();
    for (std::size_t number = first.number; number < second.number; ++number) length += PathOf(number).Length();
    return std::abs(length + second.fraction * PathOf(second.number).Length());
}

std::vector<std::size_t> Stop::Numbers() const {
    std::vector<std::size_t> numbers;
    for (const Fit& fit : fits) {
        if (numbers.empty() || numbers.back() != fit.place.number) numbers.push_back(fit.place.number);
    }
    return numbers;
}

Stop FindStop(const PlanPaths& paths, const model::Vector3& standing, const KnownMove& known, double positionError) {
    if (known.kind == KnownMove::Kind::During) return During(paths, known, standing, positionError);
    if (known.kind == KnownMove::Kind::After) return After(paths, known.number, standing, positionError);
    Search search(paths, standing, positionError);
    for (std::size_t number = 1; number <= lastMove; ++number) search.Look(number);
    return std::move(search).Result();
}

} // namespace qmv40::recovery
