#include "tools/recovery/WayCheck.h"

#include "tools/model/Tolerances.h"

#include <algorithm>
#include <cmath>

namespace qmv40::recovery {

namespace {

using check::Finding;
using K = check::FindingKind;

/// True also for not-a-number: an unknown amount is not safe.
bool IsAbove(double amount, double allowed) { return !(amount <= allowed); }

std::optional<Finding> FirstOf(const std::vector<Finding>& findings) {
    return findings.empty() ? std::nullopt : std::optional(findings.front());
}

std::optional<Finding> FindingOfClearance(const model::HeadModel& head, const check::CheckOptions& options,
                                          motion::ExecutedMove run, plans::MoveId contact,
                                          check::Surroundings& surroundings) {
    run.id = contact;
    return FirstOf(check::FindingsOfClearance(check::ClearanceOf(run, head, options.sizes), surroundings.Of(run),
                                              options, surroundings));
}

/// A lever that was pushed part of the way and would be left so.
std::optional<Finding> FindingOfLever(const motion::ExecutedMove& run) {
    if (run.before.pushed == 0.0 || run.after.lever != run.before.lever) return std::nullopt;
    return Finding{run.before.lever == model::LeverState::Locked ? K::LeverNotUnlocked : K::LeverNotLocked, {}, {}};
}

std::optional<Finding> FindingOfHead(const motion::ExecutedMove& run) {
    const bool isLocked = run.before.lever == model::LeverState::Locked;
    if (isLocked && run.after.isOnPeg) return Finding{K::EngagedWhileLocked, {}, {}};
    if (IsAbove(run.pulledOff, model::lengthTolerance)) return Finding{K::PegTornOut, {}, run.pulledOff};
    const double beyond = check::BeyondStops(run.after.angles);
    if (IsAbove(beyond, model::angleTolerance)) return Finding{K::HeadAngleOutOfRange, {}, beyond};
    return std::nullopt;
}

std::optional<Finding> FindingOfEnd(const motion::Machine& machine, const WayOut& way) {
    const motion::HeadState& state = machine.State();
    if (state.isOnPeg) return Finding{K::StillOnThePeg, {}, {}};
    if (state.lever != model::LeverState::Locked) return Finding{K::NotLockedAtTheEnd, {}, {}};
    const double turned = check::LargestDifference(state.angles, way.angles);
    if (IsAbove(turned, model::angleTolerance)) return Finding{K::TargetNotReached, {}, turned};
    const double off = model::Distance(*machine.Position(), way.end);
    if (IsAbove(off, model::lengthTolerance)) return Finding{K::TargetPositionMissed, {}, off};
    return std::nullopt;
}

} // namespace

std::optional<Finding> FirstFinding(const model::HeadModel& head, const check::CheckOptions& options,
                                    const Stopped& stopped, const WayOut& way) {
    motion::Machine machine = motion::Machine::InTheMiddle(head, stopped.head, stopped.position);
    check::Surroundings surroundings(head, options.sizes, options.scene);
    for (std::size_t i = 0; i < way.moves.size(); ++i) {
        const WayMove& each = way.moves[i];
        if (!motion::Machine::CanRun(each.move)) return Finding{K::NotANumber, i, {}};
        const motion::ExecutedMove run = machine.Run(each.move);
        std::optional<Finding> found = FindingOfLever(run);
        if (!found) found = FindingOfHead(run);
        if (!found) found = FindingOfClearance(head, options, run, each.contact, surroundings);
        if (!found) found = FirstOf(check::FindingsOfTravel(run.path, options));
        if (!found) continue;
        found->move = i;
        return found;
    }
    return FindingOfEnd(machine, way);
}

} // namespace qmv40::recovery
