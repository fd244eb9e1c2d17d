#pragma once

#include "tools/check/Clearance.h"
#include "tools/check/HeadParts.h"
#include "tools/check/obstacles/Solid.h"

#include <array>
#include <map>

/// What stands around the head, and how much every part of the head keeps clear of it in a move.

namespace qmv40::check {

inline constexpr const char* poleSphereName = "pole sphere";

/// What is taken for granted about machine and fixtures.
struct Scene {
    PartSizes parts;
    double stemDiameter = 6.0;                  ///< mm; the pole sphere's stem goes straight down
    std::optional<double> table;                ///< Z of its surface
    std::vector<obstacles::Obstacle> obstacles; ///< fixtures and whatever else stands around
};

/// A part's clearance to one of the solids in one move: see obstacles/Sweep.h.
struct PartClearance {
    std::size_t part;  ///< index of its name
    std::size_t solid; ///< index of its name
    double atLeast;    ///< mm
};

using PartClearances = std::vector<PartClearance>;

class Surroundings {
public:
    /// `head` has to outlive it.
    Surroundings(const model::HeadModel& theHead, const BallSizes& sizes, const Scene& theScene);

    /// Of each part to each solid, in the order of the parts. Cup and levers are made to meet the pole sphere: nothing
    /// is said here of them and the sphere or its stem, nor of body and joint where their sizes were not given.
    const PartClearances& Of(const motion::ExecutedMove& move);

    /// From now on a clearance that is farther than the smallest of the same part and solid so far, and than
    /// `required`, is not worked out: what is told is then at least that. For many plans of one head.
    void LookForTheWorstAlone(double required);

    const std::vector<const char*>& Parts() const { return parts; }
    const std::vector<std::string>& Solids() const { return solids; }
    std::size_t DifferentMoves() const { return known.size(); }

private:
    /// All that a move's clearances follow from.
    using Key = std::array<double, 17>;

    static Key KeyOf(const motion::ExecutedMove& move);
    PartClearances Measured(const motion::ExecutedMove& move);
    double EnoughFor(std::size_t part, std::size_t solid) const;

    struct Standing {
        std::shared_ptr<const obstacles::Solid> solid;
        bool isPoleSphere; ///< or its stem
    };

    const model::HeadModel& head;
    Scene scene;
    std::vector<const char*> parts;
    std::vector<std::string> solids;
    std::vector<Standing> standing;
    std::map<Key, PartClearances> known;
    std::optional<double> required;
    std::vector<double> smallest; ///< by part and solid
};

/// The lowest point of the stylus' tip in a move, mm; none without a stylus. Never higher than the truth.
std::optional<double> LowestTip(const motion::ExecutedMove& move, const model::HeadModel& head, const PartSizes& sizes);

} // namespace qmv40::check
