#pragma once

#include "tools/check/Clearance.h"
#include "tools/check/HeadParts.h"
#include "tools/check/obstacles/Solid.h"

#include <array>
#include <map>

/// The obstacles around the head, and the clearances of the parts of the head to them in a move.

namespace qmv40::check {

inline constexpr const char* poleSphereName = "pole sphere";

/// The assumptions about machine and fixtures.
struct Scene {
    PartSizes parts;
    double stemDiameter = 6.0;                  ///< mm; the pole sphere's stem goes straight down
    std::optional<double> table;                ///< Z of its surface
    std::vector<obstacles::Obstacle> obstacles; ///< fixtures and other obstacles
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
    /// `theHead` must live as long as this object.
    Surroundings(const model::HeadModel& theHead, const BallSizes& sizes, const Scene& theScene);

    /// The clearance of each part to each solid, in the order of the parts. Cup and levers touch the pole sphere by
    /// design, so that they are not compared with the sphere or its stem; neither are body and joint when their sizes
    /// were not given.
    const PartClearances& Of(const motion::ExecutedMove& move);

    /// From now on a clearance above both `required` and the smallest one so far of the same part and solid is not
    /// computed exactly: the value returned is then a lower bound. This is faster for many plans of one head.
    void ComputeOnlySmallest(double required);

    const std::vector<const char*>& Parts() const { return parts; }
    const std::vector<std::string>& Solids() const { return solids; }
    std::size_t DifferentMoves() const { return known.size(); }

private:
    /// All numbers on which the clearances of a move depend.
    using Key = std::array<double, 17>;

    static Key KeyOf(const motion::ExecutedMove& move);
    PartClearances Measured(const motion::ExecutedMove& move);
    double EnoughFor(std::size_t part, std::size_t solid) const;

    struct PlacedSolid {
        std::shared_ptr<const obstacles::Solid> solid;
        bool isPoleSphere; ///< or its stem
    };

    const model::HeadModel& head;
    Scene scene;
    std::vector<const char*> parts;
    std::vector<std::string> solids;
    std::vector<PlacedSolid> placed;
    std::map<Key, PartClearances> known;
    std::optional<double> required;
    std::vector<double> smallest; ///< by part and solid
};

/// The height of the stylus tip's lowest point in a move, mm; empty without a stylus. A lower bound.
std::optional<double> LowestTip(const motion::ExecutedMove& move, const model::HeadModel& head, const PartSizes& sizes);

} // namespace qmv40::check
