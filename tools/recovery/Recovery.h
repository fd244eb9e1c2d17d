#pragma once

#include "tools/recovery/WaysOut.h"

#include <optional>
#include <string>
#include <vector>

/// Where a stopped plan left the head, and how to get out of it.

namespace qmv40::recovery {

struct Question {
    model::Vector3 standing; ///< where the machine stands
    KnownMove known;
    double positionError = usualPositionError;
    check::CheckOptions check; ///< the options with which ways out are checked
};

/// A way out that was run on the model. With a finding it must not be run on the machine.
struct CheckedWay {
    WayOut way;
    std::optional<check::Finding> finding;

    bool IsSafe() const { return !finding; }
    /// The moves with their ends; the first begins at the present machine position.
    std::vector<plans::PlacedMove> Placed(const model::Vector3& standing) const;
};

struct Recovery {
    Stop stop;
    // Empty when the state is unknown
    std::optional<CheckedWay> finish;
    std::optional<CheckedWay> backOut;

    bool HasBothWays() const { return finish && finish->IsSafe() && backOut && backOut->IsSafe(); }
};

/// The plans of an indexing, made by the component from the geometry file.
Plans PlansFor(const std::string& geometryFile, const model::HeadAngles& from, const model::HeadAngles& to);

/// One stopped plan, prepared for any number of questions.
class StoppedPlan {
public:
    /// `theHead` must live as long as this object. Throws UsageError when a plan has a number that is not finite.
    StoppedPlan(const model::HeadModel& theHead, Plans thePlans);

    const model::HeadModel& Head() const { return head; }
    const plans::Plan& UnderWay() const { return plans.underWay; }
    const PlanPaths& Paths() const { return paths; }
    Recovery Answer(const Question& question) const;
    /// Head and machine at a stop whose state is known.
    Stopped StateOf(const Stop& stop, const model::Vector3& standing) const;

private:
    Stopped StateAt(const Progress& place) const;
    CheckedWay BestOf(std::vector<WayOut> ways, const check::CheckOptions& options, const Stopped& state) const;

    const model::HeadModel& head;
    Plans plans;
    PlanPaths paths;
};

} // namespace qmv40::recovery
