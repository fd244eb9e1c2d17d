#pragma once

#include "tests/maths/ExactVector.h"

/// The error of a fitted line or plane, and the error that the rounding of the points alone can cause.
/// The exact direction is an eigenvector of the scatter matrix about the mean. Both are computed with 32 digits.
class AxisCertificate {
public:
    enum Axis { Longest, Shortest };

    AxisCertificate(const std::vector<Coordinates>& points, const CMaPoint& point, const CMaVector& direction,
                    Axis axis) {
        const std::vector<ExactVector> exact = Exactly(points);
        const ExactVector fitted = UnitAlong({direction[0], direction[1], direction[2]});
        const ExactVector mean = MeanOf(exact);
        const Matrix scatter = ScatterAbout(mean, exact);
        const ExactVector best = EigenvectorNear(fitted, scatter);
        pointError = Norm(Minus({point.x(), point.y(), point.z()}, mean));
        directionError = Norm(Minus(fitted, best));
        Compare(best, scatter, axis);
        std::mt19937_64 random(points.size());
        for (int i = 0; i < 8; ++i) {
            const std::vector<ExactVector> rounded = RoundedAtRandom(exact, random);
            const ExactVector other = EigenvectorNear(best, ScatterAbout(MeanOf(rounded), rounded));
            directionFloor = std::max(directionFloor, Norm(Minus(other, best)));
        }
    }

    bool isBest;           ///< the exact direction nearest to the fitted one has the largest (smallest) spread of all
    double pointError;     ///< distance of the fitted point from the mean of the points
    double directionError; ///< radians
    /// The factor by which rounding errors grow if another direction has nearly the same spread: a b / |a^2 - b^2| for
    /// the spreads a and b.
    double likeness;
    /// The largest change of the exact direction, in radians, when the coordinates are changed at random by up to half
    /// a unit in the last place (8 tries).
    double directionFloor = 0.0;

private:
    using Matrix = std::array<ExactVector, 3>;

    static ExactVector MeanOf(const std::vector<ExactVector>& points) {
        ExactVector sum{};
        for (const ExactVector& p : points) sum = Plus(sum, p);
        return Scaled(sum, DoubleDouble(1.0) / static_cast<double>(points.size()));
    }

    static Matrix ScatterAbout(const ExactVector& mean, const std::vector<ExactVector>& points) {
        Matrix sum{};
        for (const ExactVector& p : points) {
            const ExactVector arm = Minus(p, mean);
            for (std::size_t i = 0; i < 3; ++i) sum[i] = Plus(sum[i], Scaled(arm, arm[i]));
        }
        return sum;
    }

    static ExactVector Times(const Matrix& m, const ExactVector& v) {
        return {Dot(m[0], v), Dot(m[1], v), Dot(m[2], v)};
    }

    static Matrix Less(Matrix m, DoubleDouble value) {
        for (std::size_t i = 0; i < 3; ++i) m[i][i] -= value;
        return m;
    }

    /// Rayleigh quotient iteration: each step triples the number of correct digits. The adjugate takes the place of the
    /// inverse, which becomes infinite at the end; only its direction is needed.
    static ExactVector EigenvectorNear(const ExactVector& start, const Matrix& scatter) {
        ExactVector v = start;
        for (int i = 0; i < 3; ++i) {
            const Matrix m = Less(scatter, Dot(v, Times(scatter, v)));
            const Matrix adjugate = {Cross(m[1], m[2]), Cross(m[2], m[0]), Cross(m[0], m[1])};
            const ExactVector next = UnitAlong(Times(adjugate, v));
            v = Dot(next, start) < 0.0 ? Scaled(next, -1.0) : next;
        }
        return v;
    }

    void Compare(const ExactVector& best, const Matrix& scatter, Axis axis) {
        const DoubleDouble own = Dot(best, Times(scatter, best));
        const Matrix m = Less(scatter, own);
        // The sum and the product of the differences between the other two eigenvalues and this one.
        const DoubleDouble sum = m[0][0] + m[1][1] + m[2][2];
        const DoubleDouble product = Cross(m[1], m[2])[0] + Cross(m[2], m[0])[1] + Cross(m[0], m[1])[2];
        isBest = !(product < 0.0) && (axis == Shortest ? !(sum < 0.0) : !(0.0 < sum));
        const DoubleDouble root = Sqrt(sum * sum - DoubleDouble(4.0) * product);
        const DoubleDouble nearer = (sum + (sum < 0.0 ? root : -root)) / 2.0;
        likeness = static_cast<double>(Sqrt(own * (own + nearer))) / std::fabs(static_cast<double>(nearer));
    }
};
