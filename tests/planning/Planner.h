#pragma once

#include "planning/MovePlanner.h"
#include "tests/head/HeadChecks.h"
#include "tests/head/HeadTest.h"
#include "tests/head/SavedHead.h"

#include <cstring>

/// The planner with access to its head and its current angles.
class Planner : public qmv40::MovePlanner {
public:
    RoundThePole& Head() noexcept { return headGeometry; }
    void StandAt(double a, double b) noexcept {
        currentA = a;
        currentB = b;
    }
    /// `moves`: what the record holds before it is filled.
    RequiredMoves Plan(double targetA, double targetB, RequiredMoves moves = {}) const {
        PlanMoves(targetA, targetB, moves);
        return moves;
    }
};

inline Triple TripleOf(const XYZData& position) { return {position.XPosition, position.YPosition, position.ZPosition}; }
inline Triple OriginOf(const ArcData& arc) { return {arc.XOrigin, arc.YOrigin, arc.ZOrigin}; }
inline Triple VectorOf(const ArcData& arc) { return {arc.iRotationVector, arc.jRotationVector, arc.kRotationVector}; }
inline CMaVector MaVectorOf(const Triple& v) { return CMaVector(v[0], v[1], v[2]); }

/// The head centre in tests with numbers computed by hand: far from the origin, exactly representable, not turned.
inline constexpr Triple workedCentre{128.0, -64.0, 512.0};
inline constexpr double workedSafeZ = 547.0;

/// The rounding of sums with coordinates of this size.
inline constexpr double workedRounding = 5e-13;

class Planning : public HeadTest {
protected:
    void SetUp() override { LoadWorkedHead(); }
    void LoadWorkedHead(double rotation = 0.0) {
        SavedHead{.headCentre = workedCentre, .rotation = rotation}.LoadInto(planner.Head());
    }
    /// The position at this offset from the head centre above.
    static Triple FromCentre(double x, double y, double z) { return workedCentre + Triple{x, y, z}; }

    Planner planner;
    RequiredMoves moves{};
};
