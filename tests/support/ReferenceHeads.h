#pragma once

#include "interface/Records.h"

#include <array>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

/// A simulated capture and the results that it must give, computed independently of the component: circle fits in
/// 40-digit arithmetic; everything whose order of operations is required, in doubles and in that order.
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

/// For messages of failing tests.
inline void PrintTo(const ReferenceHead& head, std::ostream* out) { *out << head.name; }

/// All heads of tests/data/heads, in the order of their names. Throws if there is no file or a file is incomplete: a
/// test must not pass without data.
std::vector<ReferenceHead> LoadReferenceHeads();

/// All numbers of a plan, in the order of the record.
inline constexpr std::size_t numbersInAPlan = sizeof(RequiredMoves) / sizeof(double);
std::array<double, numbersInAPlan> NumbersOf(const RequiredMoves& moves);

/// Name of number `index` of a plan, for messages: "UnLock.XOrigin".
std::string NameOfNumber(std::size_t index);
