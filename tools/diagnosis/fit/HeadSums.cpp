#include "tools/diagnosis/fit/HeadSums.h"

#include "tools/model/Angles.h"

#include <algorithm>
#include <functional>
#include <numbers>

namespace qmv40::diagnosis::fit {

namespace {

/// A symmetric 3 x 3 matrix. Only a positive definite one is inverted, by its cofactors.
class Symmetric {
public:
    Symmetric& operator+=(const Symmetric& other) {
        for (std::size_t i = 0; i < 6; ++i) m[i] += other.m[i];
        return *this;
    }
    /// `factor` times the products of all pairs of the columns.
    static Symmetric OfColumns(const model::Vector3* columns, double factor) {
        return {factor * model::Dot(columns[0], columns[0]), factor * model::Dot(columns[0], columns[1]),
                factor * model::Dot(columns[0], columns[2]), factor * model::Dot(columns[1], columns[1]),
                factor * model::Dot(columns[1], columns[2]), factor * model::Dot(columns[2], columns[2])};
    }
    static Symmetric Diagonal(double value) { return {value, 0.0, 0.0, value, 0.0, value}; }

    Symmetric Inverse() const {
        const double xx = m[3] * m[5] - m[4] * m[4], xy = m[2] * m[4] - m[1] * m[5], xz = m[1] * m[4] - m[2] * m[3];
        const double factor = 1.0 / (m[0] * xx + m[1] * xy + m[2] * xz);
        return {factor * xx,
                factor * xy,
                factor * xz,
                factor * (m[0] * m[5] - m[2] * m[2]),
                factor * (m[1] * m[2] - m[0] * m[4]),
                factor * (m[0] * m[3] - m[1] * m[1])};
    }
    model::Vector3 operator*(const model::Vector3& v) const {
        return {m[0] * v.x + m[1] * v.y + m[2] * v.z, m[1] * v.x + m[3] * v.y + m[4] * v.z,
                m[2] * v.x + m[4] * v.y + m[5] * v.z};
    }

private:
    Symmetric(double xx, double xy, double xz, double yy, double yz, double zz) : m{xx, xy, xz, yy, yz, zz} {}

    double m[6]; // NOLINT(modernize-use-default-member-init): its values are arguments
};

/// The transposed columns times `v`.
model::Vector3 Transposed(const model::Vector3* columns, const model::Vector3& v) {
    return {model::Dot(columns[0], v), model::Dot(columns[1], v), model::Dot(columns[2], v)};
}

model::Vector3 TimesColumns(const model::Vector3* columns, const model::Vector3& v) {
    return v.x * columns[0] + v.y * columns[1] + v.z * columns[2];
}

model::Vector3 Horizontal(const model::Vector3& v) { return {v.x, v.y, 0.0}; }
model::Vector3 HorizontalTurnedBack(const model::Vector3& v) { return {v.y, -v.x, 0.0}; }
model::Vector3 Vertical(const model::Vector3& v) { return {0.0, 0.0, v.z}; }

/// The correlation of rotations and positions, each relative to the mean of its group, for mounting angle m: fixed +
/// cos(m) withCos + sin(m) withSin.
struct Correlation {
    model::Vector3 fixed, withCos, withSin;

    model::Vector3 At(double mounting) const {
        return fixed + std::cos(mounting) * withCos + std::sin(mounting) * withSin;
    }
};

Correlation CorrelationOf(std::span<const HeadSums> groups) {
    Correlation sum;
    for (const HeadSums& group : groups) {
        const model::Vector3 mean = (1.0 / group.count) * group.positions;
        sum.fixed = sum.fixed + group.turnedZ - Transposed(group.turns, Vertical(mean));
        sum.withCos = sum.withCos + group.turnedX - Transposed(group.turns, Horizontal(mean));
        sum.withSin = sum.withSin + group.turnedY - Transposed(group.turns, HorizontalTurnedBack(mean));
    }
    return sum;
}

Symmetric SpreadOfTurns(std::span<const HeadSums> groups) {
    // A component of the tip that the angles do not determine is set to zero.
    constexpr double openPart = 1e-12;
    Symmetric spread = Symmetric::Diagonal(0.0);
    for (const HeadSums& group : groups) {
        spread += Symmetric::Diagonal(group.count * (1.0 + openPart));
        spread += Symmetric::OfColumns(group.turns, -1.0 / group.count);
    }
    return spread;
}

/// The part of the sum of squares that depends on the mounting angle: a cosine and a sine of it and of twice it.
struct Gain {
    double fixed, withCos, withSin, withCosCos, withSinSin, withCosSin;

    Gain(const Correlation& c, const Symmetric& inverse)
        : fixed(model::Dot(c.fixed, inverse * c.fixed)), withCos(2.0 * model::Dot(c.fixed, inverse * c.withCos)),
          withSin(2.0 * model::Dot(c.fixed, inverse * c.withSin)),
          withCosCos(model::Dot(c.withCos, inverse * c.withCos)),
          withSinSin(model::Dot(c.withSin, inverse * c.withSin)),
          withCosSin(2.0 * model::Dot(c.withCos, inverse * c.withSin)) {}

    double At(const model::Rotation& mounting) const {
        const auto& [c, s] = mounting;
        return fixed + c * withCos + s * withSin + c * c * withCosCos + s * s * withSinSin + c * s * withCosSin;
    }
    double Slope(const model::Rotation& mounting) const {
        const auto& [c, s] = mounting;
        return c * withSin - s * withCos + 2.0 * c * s * (withSinSin - withCosCos) + (c * c - s * s) * withCosSin;
    }
    double Curvature(const model::Rotation& mounting) const {
        const auto& [c, s] = mounting;
        return -c * withCos - s * withSin + 2.0 * (c * c - s * s) * (withSinSin - withCosCos) -
               4.0 * c * s * withCosSin;
    }
};

double AngleOfGreatest(const Gain& gain) {
    // The function has at most two maxima, and the greater one is wider than an eighth of a turn.
    constexpr int samples = 24;
    constexpr double spacing = 2.0 * std::numbers::pi / samples;
    static const std::vector<model::Rotation> rotations = [] {
        std::vector<model::Rotation> all;
        all.reserve(samples);
        for (int i = 0; i < samples; ++i) all.emplace_back(i * spacing);
        return all;
    }();
    double best = 0.0, greatest = gain.At(rotations[0]);
    for (int i = 1; i < samples; ++i) {
        const double here = gain.At(rotations[static_cast<std::size_t>(i)]);
        if (here <= greatest) continue;
        greatest = here;
        best = i * spacing;
    }
    constexpr int steps = 5;
    double angle = best;
    for (int i = 0; i < steps; ++i) {
        const model::Rotation mounting(angle);
        const double curvature = gain.Curvature(mounting);
        if (!(curvature < 0.0)) break;
        angle = std::clamp(angle - gain.Slope(mounting) / curvature, best - spacing, best + spacing);
    }
    return gain.At(model::Rotation(angle)) >= greatest ? angle : best;
}

} // namespace

HeadSums::HeadSums(const captures::CapturedPoint& point, double moreTilt, double moreSwivel)
    : count(point.weight), squares(point.weight * model::Dot(point.position, point.position)),
      positions(point.weight * point.position) {
    const model::Rotation tilt(-(model::ToRadians(point.a) + moreTilt)), swivel(model::ToRadians(point.b) + moreSwivel);
    turns[0] = model::AboutZ(swivel, {1.0, 0.0, 0.0});
    turns[1] = model::AboutZ(swivel, model::AboutX(tilt, {0.0, 1.0, 0.0}));
    turns[2] = model::AboutZ(swivel, model::AboutX(tilt, {0.0, 0.0, 1.0}));
    turnedX = Transposed(turns, Horizontal(positions));
    turnedY = Transposed(turns, HorizontalTurnedBack(positions));
    turnedZ = Transposed(turns, Vertical(positions));
    for (model::Vector3& column : turns) column = point.weight * column;
}

template <typename Operation> HeadSums& HeadSums::Combine(Operation operation, const HeadSums& other) {
    count = operation(count, other.count);
    squares = operation(squares, other.squares);
    positions = operation(positions, other.positions);
    for (std::size_t i = 0; i < 3; ++i) turns[i] = operation(turns[i], other.turns[i]);
    turnedX = operation(turnedX, other.turnedX);
    turnedY = operation(turnedY, other.turnedY);
    turnedZ = operation(turnedZ, other.turnedZ);
    return *this;
}

HeadSums& HeadSums::operator+=(const HeadSums& other) { return Combine(std::plus(), other); }
HeadSums& HeadSums::operator-=(const HeadSums& other) { return Combine(std::minus(), other); }

HeadSums HeadSums::Tilted(double moreTilt) const {
    // Every rotation K becomes K Rx(-moreTilt): its columns are combined, and K^T v turns about X.
    const model::Rotation turn(moreTilt);
    HeadSums tilted = *this;
    tilted.turns[1] = turn.c * turns[1] - turn.s * turns[2];
    tilted.turns[2] = turn.s * turns[1] + turn.c * turns[2];
    for (model::Vector3* const each : {&tilted.turnedX, &tilted.turnedY, &tilted.turnedZ}) {
        *each = model::AboutX(turn, *each);
    }
    return tilted;
}

HeadSums HeadSums::Swivelled(double moreSwivel) const {
    // Every rotation K becomes Rz(moreSwivel) K, which equals turning the positions back.
    const model::Rotation turn(moreSwivel);
    HeadSums swivelled = *this;
    for (model::Vector3& column : swivelled.turns) column = model::AboutZ(turn, column);
    swivelled.turnedX = turn.c * turnedX + turn.s * turnedY;
    swivelled.turnedY = turn.c * turnedY - turn.s * turnedX;
    return swivelled;
}

HeadSums HeadSums::Shifted(const model::Vector3& shift) const {
    HeadSums shifted = *this;
    shifted.squares += 2.0 * model::Dot(shift, positions) + count * model::Dot(shift, shift);
    shifted.positions = positions + count * shift;
    shifted.turnedX = turnedX + Transposed(turns, Horizontal(shift));
    shifted.turnedY = turnedY + Transposed(turns, HorizontalTurnedBack(shift));
    shifted.turnedZ = turnedZ + Transposed(turns, Vertical(shift));
    return shifted;
}

BestHeadResult BestHead(std::span<const HeadSums> groups) {
    const Correlation correlation = CorrelationOf(groups);
    const Symmetric inverse = SpreadOfTurns(groups).Inverse();
    const Gain gain(correlation, inverse);
    BestHeadResult best;
    best.model.mounting = AngleOfGreatest(gain);
    best.model.tip = -(inverse * correlation.At(best.model.mounting));
    const HeadSums& first = groups.front();
    best.model.poleSphere =
        (1.0 / first.count) * (first.positions + model::AboutZ(model::Rotation(best.model.mounting),
                                                               TimesColumns(first.turns, best.model.tip)));
    for (const HeadSums& group : groups) {
        best.sumOfSquares += group.squares - model::Dot(group.positions, group.positions) / group.count;
    }
    best.sumOfSquares = std::max(0.0, best.sumOfSquares - gain.At(model::Rotation(best.model.mounting)));
    return best;
}

} // namespace qmv40::diagnosis::fit
