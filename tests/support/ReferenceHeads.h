#pragma once

#include "interface/Records.h"

#include <array>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

/// A head measured on paper and everything that must come of it, worked out independently of the component: circle fits
/// in 40-digit arithmetic, everything whose order of operations is fixed in doubles in that order.
struct ReferenceHead {
    struct Position {
        double a; ///< degrees
        double b;
    };
    struct Plan {
        Position from;
        Position to;
        RequiredMoves moves;
    };
    struct FileEntry {
        std::string section;
        std::string key;
        std::string text;
    };

    std::string name;
    std::vector<std::pair<std::string, std::string>> settings; ///< text values of the settings store
    std::vector<HeadAlignmentDataItem> aAxisPoints;            ///< measured with the head unlocked
    std::vector<HeadAlignmentDataItem> bAxisPoints;

    std::array<double, 3> headCentre;
    double requiredRotationAroundZ;
    int quadrant;
    double safePositionZ;
    std::vector<FileEntry> file; ///< the seven entries of the geometry file, in their order
    std::vector<Plan> plans;
};

/// How a failing test names it.
inline void PrintTo(const ReferenceHead& head, std::ostream* out) { *out << head.name; }

/// All of tests/data/heads, by name. Throws when a file is missing or not as expected: no test may pass on no data.
std::vector<ReferenceHead> LoadReferenceHeads();

/// The records of a plan as the numbers that they are made of, in their order in memory.
inline constexpr std::size_t numbersInAPlan = sizeof(RequiredMoves) / sizeof(double);
std::array<double, numbersInAPlan> NumbersOf(const RequiredMoves& moves);

/// Name of number `index` of a plan, for messages: "UnLock.XOrigin".
std::string NameOfNumber(std::size_t index);
