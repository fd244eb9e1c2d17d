#pragma once

#include "check/Figures.h"
#include "cli/CheckReport.h"
#include "cli/Console.h"
#include "cli/Json.h"

#include <functional>
#include <vector>

/// Every indexing between the positions of a head, planned by the component and checked.

struct AllPairs {
    std::vector<HeadAngles> positions;
    std::size_t refused = 0; ///< pairs that the component does not plan
    std::size_t findings = 0;
    std::vector<std::size_t> findingsOfKind; ///< by kind
    std::vector<CheckedPlan> examples;       ///< the first plan with each kind of finding
    check::Figures figures;

    std::size_t Pairs() const { return positions.size() * positions.size(); }
};

/// A from `leastA` to 90, B from -180 to 180, in steps of 15.
std::vector<HeadAngles> HeadPositions(int leastA);

/// Geometry and settings are those of `geometryFile` and the settings in force.
AllPairs CheckAllPairs(const std::string& geometryFile, const check::HeadModel& head,
                       const check::CheckOptions& options, std::vector<HeadAngles> positions, const Console& console);

void PrintAllPairs(const AllPairs& all, const Console& console);
Json AllPairsJson(const AllPairs& all, const check::CheckOptions& options);
