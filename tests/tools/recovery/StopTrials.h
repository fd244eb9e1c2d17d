#pragma once

#include "tools/recovery/Recovery.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// Trials of recovery: stops before, inside and after every move of plans, and counts of the tool's answers.

/// What the tool is told about a stop.
enum class Given { MoveKnown, MoveKnownWithNoise, PositionOnly, PositionOnlyWithNoise, Jogged };
inline constexpr std::size_t givenCount = 5;

/// The same in words, for example "move and position".
const char* NameOf(Given given);

struct Counts {
    std::size_t asked = 0;
    std::size_t right = 0;
    /// With a reason: another state, or other angles, of the plan lie within the position error, or the machine was
    /// jogged.
    std::size_t unknown = 0;
    std::size_t needless = 0; ///< unknown without a reason
    std::size_t wrong = 0;
};

struct Tally {
    std::size_t plans = 0;
    std::size_t stops = 0;
    std::array<Counts, givenCount> told{};
    std::array<Counts, 8> positionOnlyByState{}; ///< by the true state, without noise
    std::size_t ways = 0;                        ///< judged ways out
    std::size_t waysMissing = 0;
    std::size_t waysWithProblem = 0;
    std::vector<std::string> examples; ///< the first few failures

    void Add(const Tally& other);
    const Counts& Of(Given given) const { return told[static_cast<std::size_t>(given)]; }
    /// True when no answer is wrong or needlessly unknown, and no way is missing or has a problem.
    bool IsGood() const;
};

/// Writes the geometry of the trials to `fileName`. The head is mounted turned, and no number is round.
void WriteTrialGeometry(const std::string& fileName);
/// The model of that head.
qmv40::model::HeadModel TrialHead();

/// Tries the stops of one plan. `seed`: for noise and jogs.
Tally TryStopsOf(const qmv40::model::HeadModel& head, const qmv40::recovery::Plans& plans, std::uint64_t seed);
