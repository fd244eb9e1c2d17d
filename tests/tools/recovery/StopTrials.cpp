#include "StopTrials.h"

#include "WayJudge.h"
#include "tools/check/HeadFile.h"
#include "tools/model/Angles.h"
#include "tools/plans/HeadAnglesText.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <random>

namespace {

using namespace qmv40;
using model::Vector3;
using recovery::KnownMove;
using recovery::State;

constexpr std::size_t placesInside = 10;
constexpr double exactAngle = 1e-6; // degrees, for positions without noise
/// mm and degrees, for positions without noise: rounding errors are about 1e-9 mm.
constexpr JudgeTolerance exactly{1e-6, 1e-6};
/// mm and degrees, for positions with noise. As A turns, the cup comes within 6.95 mm of the B axis: the position error
/// of 0.05 mm is then 0.41 degrees. At 27 mm, the cup's distance from the head centre, 0.41 degrees are 0.2 mm.
constexpr JudgeTolerance withNoise{0.3, 0.5};
constexpr double noise = 0.01; // mm, standard deviation of each coordinate

// The state in each move, 1 to 19. A table of the tests' own, so that they do not depend on the tool's.
constexpr State U = State::Untouched, L = State::Unlocked, P = State::OnPeg, I = State::Indexed;
constexpr std::array<State, 20> stateInMove{
    State::Unknown, U, U, State::Unlocking, L, L, L, L, L, P, P, P, I, I, I, I, I, I, State::Locking, State::Locked};

/// A stop of which the truth is known.
struct Injected {
    std::size_t number;
    double fraction;
    KnownMove known;
    State state;
    TrueState truth;
    double radius; ///< mm, of the arc on which it lies; 0 on a straight move
};

/// True when state and angles are those of the stop.
bool IsSameHead(const State& left, const model::HeadAngles& leftAngles, const Injected& right, double angle) {
    return left == right.state && std::abs(leftAngles.a - right.truth.angles.a) <= angle &&
           std::abs(leftAngles.b - right.truth.angles.b) <= angle;
}

class PlanTrial {
public:
    PlanTrial(const model::HeadModel& theHead, const recovery::Plans& thePlans, std::uint64_t seed)
        : head(theHead), plans(thePlans), plan(theHead, thePlans), random(seed) {
        motion::Machine machine(head, plans.underWay.from, recovery::EndOf(plans.stay));
        for (const plans::PlannedMove& move : plans.underWay.moves) runs.push_back(machine.Run(move));
        tally.plans = 1;
    }

    Tally Result() && {
        for (const Injected& stop : Stops()) Try(stop);
        return std::move(tally);
    }

private:
    std::vector<Injected> Stops() const;
    TrueState TruthAt(std::size_t number, double fraction) const;
    void Try(const Injected& stop);
    void TryWays(const Injected& stop, const Vector3& standing, const JudgeTolerance& tolerance);
    void TryWay(const Injected& stop, const std::optional<recovery::CheckedWay>& way,
                const plans::Plan& planWithSameEnd, const JudgeTolerance& tolerance, const char* name);
    void Ask(Given given, const Injected& stop, const Vector3& standing, const KnownMove& known, double angle);
    void Jog(const Injected& stop);
    bool IsReasonToDoubt(const Injected& stop, const Vector3& standing) const;
    Vector3 Noise();
    void Note(const Injected& stop, const std::string& problem);

    const model::HeadModel& head;
    const recovery::Plans& plans;
    recovery::StoppedPlan plan;
    std::mt19937_64 random;
    std::vector<motion::ExecutedMove> runs;
    Tally tally;
};

TrueState PlanTrial::TruthAt(std::size_t number, double fraction) const {
    const motion::ExecutedMove& run = runs[number - 1];
    const motion::HeadState& state = fraction == 1.0 ? run.after : run.before;
    const bool isPush = run.after.lever != run.before.lever && fraction < 1.0;
    const bool moves = model::Distance(run.path.At(fraction), run.path.Start()) > exactly.length;
    return {run.AnglesAt(fraction),
            state.lever,
            isPush ? fraction * std::abs(run.path.Degrees()) : 0.0,
            state.isOnPeg && (run.path.IsArc() || !moves || fraction == 1.0),
            isPush || !moves || fraction == 1.0 ? state.touchedBall : std::nullopt,
            run.path.At(fraction)};
}

std::vector<Injected> PlanTrial::Stops() const {
    std::vector<Injected> stops;
    for (std::size_t number = 1; number <= plans::moveCount; ++number) {
        const double radius = runs[number - 1].path.Radius();
        const KnownMove before{KnownMove::Kind::After, number - 1};
        const KnownMove during{KnownMove::Kind::During, number};
        const KnownMove after{KnownMove::Kind::After, number};
        const State next = stateInMove[std::min(number + 1, plans::moveCount)];
        stops.push_back({number, 0.0, before, stateInMove[number], TruthAt(number, 0.0), radius});
        for (std::size_t i = 1; i <= placesInside; ++i) {
            const double fraction = static_cast<double>(i) / (placesInside + 1);
            stops.push_back({number, fraction, during, stateInMove[number], TruthAt(number, fraction), radius});
        }
        stops.push_back({number, 1.0, after, next, TruthAt(number, 1.0), radius});
    }
    return stops;
}

Vector3 PlanTrial::Noise() {
    std::normal_distribution<double> normal(0.0, noise);
    // A larger error than the stated position error would be a jog.
    for (;;) {
        const Vector3 vector{normal(random), normal(random), normal(random)};
        if (model::Length(vector) < recovery::usualPositionError) return vector;
    }
}

void PlanTrial::Note(const Injected& stop, const std::string& problem) {
    if (tally.examples.size() >= 5) return;
    tally.examples.push_back("from " + plans::HeadAnglesText(plans.underWay.from) + " to " +
                             plans::HeadAnglesText(plans.underWay.to) + ", move " + std::to_string(stop.number) +
                             " at " + std::to_string(stop.fraction) + ": " + problem);
}

/// True when another state or other angles of the plan lie within the position error.
bool PlanTrial::IsReasonToDoubt(const Injected& stop, const Vector3& standing) const {
    for (std::size_t number = 1; number <= plans::moveCount; ++number) {
        const motion::ExecutedMove& run = runs[number - 1];
        for (const double fraction : {run.path.NearestFraction(standing), 0.0, 1.0}) {
            if (model::Distance(run.path.At(fraction), standing) > recovery::usualPositionError + 1e-9) continue;
            constexpr double nearby = 1.0; // degrees: two arcs that meet have almost equal angles there
            if (!IsSameHead(stateInMove[number], run.AnglesAt(fraction), stop, nearby)) return true;
            const double gap = std::abs(run.AnglesAt(fraction).a - stop.truth.angles.a);
            if (gap > exactAngle && number != stop.number) return true;
        }
    }
    return false;
}

void PlanTrial::Ask(Given given, const Injected& stop, const Vector3& standing, const KnownMove& known, double angle) {
    const recovery::Stop answer = recovery::FindStop(plan.Paths(), standing, known, recovery::usualPositionError);
    const auto count = [&](Counts& counts) {
        ++counts.asked;
        if (answer.state == State::Unknown) {
            const bool isKnown = known.kind != KnownMove::Kind::Nothing;
            const bool isNeedless = given != Given::Jogged && (isKnown || !IsReasonToDoubt(stop, standing));
            ++(isNeedless ? counts.needless : counts.unknown);
            if (isNeedless) Note(stop, "needlessly unknown");
        } else if (given != Given::Jogged && IsSameHead(answer.state, answer.Place().angles, stop, angle)) {
            ++counts.right;
        } else {
            ++counts.wrong;
            Note(stop, std::string("taken for ") + NameOf(answer.state) + " at " +
                           plans::HeadAnglesText(answer.Place().angles) + ", asked with " + NameOf(given));
        }
    };
    count(tally.told[static_cast<std::size_t>(given)]);
    if (given == Given::PositionOnly) count(tally.positionOnlyByState[static_cast<std::size_t>(stop.state)]);
}

void PlanTrial::TryWay(const Injected& stop, const std::optional<recovery::CheckedWay>& way,
                       const plans::Plan& planWithSameEnd, const JudgeTolerance& tolerance, const char* name) {
    ++tally.ways;
    if (!way || !way->IsSafe()) {
        ++tally.waysMissing;
        return Note(stop, std::string(name) + " is missing" +
                              (way ? std::string(": ") + TextOf(way->finding->kind).name : std::string()));
    }
    std::vector<plans::PlannedMove> moves;
    for (const recovery::WayMove& each : way->way.moves) moves.push_back(each.move);
    const std::string problem =
        ProblemOfWay(head, stop.truth, moves, planWithSameEnd.to, recovery::EndOf(planWithSameEnd), tolerance);
    if (problem.empty()) return;
    ++tally.waysWithProblem;
    Note(stop, std::string(name) + ": " + problem);
}

void PlanTrial::TryWays(const Injected& stop, const Vector3& standing, const JudgeTolerance& tolerance) {
    recovery::Question question;
    question.standing = standing;
    question.known = stop.known;
    const recovery::Recovery answer = plan.Answer(question);
    TryWay(stop, answer.finish, plans.underWay, tolerance, "finish");
    TryWay(stop, answer.backOut, plans.stay, tolerance, "backOut");
}

/// Asks about a position off every move of the plan: the answer must be unknown. During the first move any position is
/// possible, because its start is not known; so the move is given only for later ones.
void PlanTrial::Jog(const Injected& stop) {
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> length(0.1, 3.0);
    const Vector3 direction = model::Unit({normal(random), normal(random), normal(random)});
    const Vector3 standing = stop.truth.position + length(random) * direction;
    const bool isOff = std::ranges::all_of(
        runs, [&](const motion::ExecutedMove& run) { return run.path.SmallestDistanceTo(standing) > 0.1; });
    if (!isOff) return;
    Ask(Given::Jogged, stop, standing, {}, exactAngle);
    if (stop.known.number + (stop.known.kind == KnownMove::Kind::After ? 1 : 0) > 1) {
        Ask(Given::Jogged, stop, standing, stop.known, exactAngle);
    }
}

void PlanTrial::Try(const Injected& stop) {
    ++tally.stops;
    const Vector3 standing = stop.truth.position;
    const Vector3 noisy = standing + Noise();
    const double angleOfNoise =
        exactAngle + (stop.radius > 0.0 ? model::ToDegrees(recovery::usualPositionError / stop.radius) : 0.0);
    Ask(Given::MoveKnown, stop, standing, stop.known, exactAngle);
    Ask(Given::MoveKnownWithNoise, stop, noisy, stop.known, angleOfNoise);
    Ask(Given::PositionOnly, stop, standing, {}, exactAngle);
    Ask(Given::PositionOnlyWithNoise, stop, noisy, {}, angleOfNoise);
    Jog(stop);
    TryWays(stop, standing, exactly);
    constexpr std::size_t stopsPerNoisyTrial = 7;
    if (tally.stops % stopsPerNoisyTrial == 0) TryWays(stop, noisy, withNoise);
}

} // namespace

const char* NameOf(Given given) {
    constexpr const char* names[] = {"move and position", "move, position with 10 um of noise", "position alone",
                                     "position alone, with 10 um of noise", "jogged off every move"};
    return names[static_cast<std::size_t>(given)];
}

void Tally::Add(const Tally& other) {
    const auto add = [](Counts& to, const Counts& from) {
        to.asked += from.asked;
        to.right += from.right;
        to.unknown += from.unknown;
        to.needless += from.needless;
        to.wrong += from.wrong;
    };
    plans += other.plans;
    stops += other.stops;
    for (std::size_t i = 0; i < told.size(); ++i) add(told[i], other.told[i]);
    for (std::size_t i = 0; i < positionOnlyByState.size(); ++i) {
        add(positionOnlyByState[i], other.positionOnlyByState[i]);
    }
    ways += other.ways;
    waysMissing += other.waysMissing;
    waysWithProblem += other.waysWithProblem;
    for (const std::string& example : other.examples) {
        if (examples.size() < 20) examples.push_back(example);
    }
}

bool Tally::IsGood() const {
    const bool isToldWell = std::ranges::all_of(
        told, [](const Counts& counts) { return counts.wrong == 0 && counts.needless == 0 && counts.asked > 0; });
    return isToldWell && waysMissing == 0 && waysWithProblem == 0 && ways > 0;
}

model::HeadModel TrialHead() {
    return check::HeadModelOf({412.7183, -178.1937, -654.8829, 0.0, 0.0, -619.8829, 23.719});
}

void WriteTrialGeometry(const std::string& fileName) {
    std::ofstream(fileName) << "[HEADCENTRE]\nX=4.127183000e+02\nY=-1.781937000e+02\nZ=-6.548829000e+02\n"
                               "[SAFEPOSITION]\nX=0.000000000e+00\nY=0.000000000e+00\nZ=-6.198829000e+02\n"
                               "[AlignmentOffset]\nRequiredRotationAroundZ=2.371900000e+01\n";
}

Tally TryStopsOf(const model::HeadModel& head, const recovery::Plans& plans, std::uint64_t seed) {
    return PlanTrial(head, plans, seed).Result();
}
