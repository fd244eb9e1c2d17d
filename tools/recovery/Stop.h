#pragma once

#include "tools/model/HeadAngles.h"
#include "tools/model/Path.h"
#include "tools/plans/PlannedMove.h"

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

/// Where a plan was stopped: the move that the machine was in, and the state of lever, cup, A and B.
///
/// Moves are counted from 1 to 19, as in documents. Millimetres, degrees.

namespace qmv40::recovery {

/// The state of lever, cup and head angles, by the move in which the machine stopped.
enum class State {
    Untouched, ///< moves 1 and 2: locked, at the plan's start angles
    Unlocking, ///< move 3: the lever is pushed part of the way
    Unlocked,  ///< moves 4 to 8: unlocked, at the plan's start angles
    OnPeg,     ///< moves 9 to 11: the cup is on the peg, A and B are being changed
    Indexed,   ///< moves 12 to 17: unlocked, at the target angles
    Locking,   ///< move 18: the lever is pushed part of the way
    Locked,    ///< move 19: locked at the target
    Unknown
};

/// With four decimals, as a person reads angles between two index positions.
model::HeadAngles ReadableAngles(const model::HeadAngles& angles);

/// "on-peg"
const char* NameOf(State state);
State StateInMove(std::size_t number);

/// A place in a plan.
struct Progress {
    std::size_t number; ///< of the move
    double fraction;    ///< of the move, 0 to 1
};

/// The paths that the machine takes in a plan, and the head angles on them.
class PlanPaths {
public:
    /// `start`: the machine position before the first move. All moves of the plan can be run.
    PlanPaths(const plans::Plan& plan, const model::Vector3& start);

    const model::Path& PathOf(std::size_t number) const { return paths[number - 1]; }
    model::HeadAngles AnglesAt(const Progress& place) const;
    /// The length of the machine's path from one place to the other.
    double LengthBetween(const Progress& first, const Progress& second) const;

private:
    model::HeadAngles from;
    model::HeadAngles to;
    std::vector<model::Path> paths;
};

/// What is known about the move apart from the position.
struct KnownMove {
    enum class Kind {
        Nothing,
        During, ///< the move with this number was under way
        After   ///< it was finished; whether the next one had begun is not known
    } kind = Kind::Nothing;
    std::size_t number = 0; ///< of the move; After 0: no move was begun
    /// During: the report that the move had ended was being written. The position decides whether it had.
    bool isEndAnnounced = false;
};

/// A possible place of the machine in the plan.
struct Fit {
    Progress place;
    double distance; ///< of the machine from this place
    model::HeadAngles angles;

    State StateThere() const { return StateInMove(place.number); }
};

struct Stop {
    State state = State::Unknown;
    std::vector<Fit> fits;               ///< all places that agree with the known facts, in the order of their moves
    std::size_t best = 0;                ///< index of the fit that is used, unless the state is unknown
    Fit nearest{};                       ///< of the moves in question; it need not agree
    bool hasSeveralOrientations = false; ///< the state is unknown because the fits agree in it, but not in A and B

    const Fit& Place() const { return fits[best]; }
    /// The moves of `fits`, each number once.
    std::vector<std::size_t> Numbers() const;
};

/// The error of a position when the user does not state one, mm. With a noise of 10 um (standard deviation) in each
/// coordinate, about one position in 60,000 is farther off. A position that is farther from a path is not on it.
inline constexpr double usualPositionError = 0.05;

Stop FindStop(const PlanPaths& paths, const model::Vector3& standing, const KnownMove& known, double positionError);

} // namespace qmv40::recovery
