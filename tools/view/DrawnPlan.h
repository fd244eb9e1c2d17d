#pragma once

#include "tools/check/CheckedTour.h"

#include <array>
#include <optional>

namespace qmv40::view {

/// How a move is marked where a plan is drawn. A move to which several levels apply has the last of them.
enum class MoveLevel {
    Clear,
    Tight,   ///< its clearance is below `tightClearance`
    Contact, ///< it must touch peg or lever
    Finding  ///< something is wrong with it, or it could not be run
};

/// The approach to the peg ends 10 mm before it. With a sphere of 5 mm radius the clearance is then 5 mm, which is
/// usual.
inline constexpr double tightClearance = 5.0; ///< mm

const char* NameOf(MoveLevel level);

MoveLevel LevelOf(const check::CheckedPlan& checked, std::size_t move);

/// A checked plan as it is drawn: everything in millimetres from the centre of the pole sphere. Points beyond
/// `drawnReach`, as of a mistyped plan, and points that are not finite are left out.

inline constexpr double drawnReach = 1000.0; ///< mm

/// The head at one place. Its levers are drawn in their state. The drawn length of the stylus is not the real one.
struct DrawnHead {
    struct Lever {
        model::Vector3 pivot;
        model::Vector3 ball;
    };
    model::Vector3 centre;
    model::Vector3 driveCup;
    model::Vector3 stylusEnd;
    std::array<Lever, 2> levers;

    std::vector<model::Vector3> Places() const;
};

struct DrawnMove {
    std::size_t index; ///< among the moves of the plan
    MoveLevel level;
    std::vector<model::Vector3> way; ///< the path of the machine position; empty when all of it is left out
    bool isComplete;                 ///< nothing was left out
};

struct DrawnPlan {
    std::vector<DrawnMove> moves; ///< those that were run
    std::optional<DrawnHead> start;
    std::optional<DrawnHead> end;
    std::optional<double> safeHeight;
    double sphereRadius;
    double ballRadius;

    /// The interval of the coordinates of everything drawn.
    struct Range {
        double smallest;
        double largest;
        double Middle() const { return (smallest + largest) / 2.0; }
        double Size() const { return largest - smallest; }
    };
    std::array<Range, 3> Extent() const;
};

/// What the machine does in a move. The first move of a plan includes the way from the end of the plan before.
std::vector<motion::ExecutedMove> RunsOf(const check::PlanReport& report, std::size_t index);

DrawnPlan DrawnPlanOf(const check::CheckedPlan& checked, const model::HeadModel& head, const check::BallSizes& sizes);

} // namespace qmv40::view
