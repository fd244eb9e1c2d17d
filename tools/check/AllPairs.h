#pragma once

#include "tools/check/CheckReport.h"
#include "tools/check/CheckedTour.h"
#include "tools/text/Console.h"
#include "tools/text/Json.h"

#include <map>
#include <vector>

namespace qmv40::check {

/// Every indexing between the positions of a head, planned by the component and checked.

/// A kind of finding, and the first finding of it.
struct FoundKind {
    std::size_t count = 0;
    Finding first{};
    plans::Plan plan; ///< in which it was found; a finding names a move of it
};

struct AllPairs {
    std::vector<model::HeadAngles> positions;
    std::size_t refused = 0;        ///< pairs that the component refuses to plan
    std::size_t differentMoves = 0; ///< moves that are in many plans are counted once
    std::size_t findings = 0;
    std::map<FindingKind, FoundKind> kinds;
    Figures figures;

    std::size_t Pairs() const { return positions.size() * positions.size(); }
};

/// A from `leastA` to 90, B from -180 to 180, in steps of 15.
std::vector<model::HeadAngles> HeadPositions(int leastA);

/// The component takes the geometry from `geometryFile` and the dimensions from the settings in force; `head` must have
/// the same.
AllPairs CheckAllPairs(const std::string& geometryFile, const model::HeadModel& head, const CheckOptions& options,
                       std::vector<model::HeadAngles> positions, const text::Console& console);

void PrintAllPairs(const AllPairs& all, const CheckOptions& options, const text::Console& console);
text::Json AllPairsJson(const AllPairs& all, const CheckOptions& options);

} // namespace qmv40::check
