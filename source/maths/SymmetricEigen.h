#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

template <std::size_t Size> using SquareMatrix = std::array<std::array<double, Size>, Size>;

/// Eigenvalues, largest first, and unit eigenvectors (the columns of `vectors`, in the same order) of a symmetric
/// matrix, by cyclic Jacobi rotations: small eigenvalues of a graded matrix keep their own accuracy. Always ends.
template <std::size_t Size> struct SymmetricEigen {
    explicit SymmetricEigen(SquareMatrix<Size> matrix) noexcept {
        for (std::size_t i = 0; i < Size; ++i) vectors[i][i] = 1.0;
        for (int sweep = 0; sweep < sweepLimit && Sweep(matrix); ++sweep) {
        }
        for (std::size_t i = 0; i < Size; ++i) values[i] = matrix[i][i];
        SortDescending();
    }

    std::array<double, Size> values{};
    SquareMatrix<Size> vectors{};

private:
    static constexpr int sweepLimit = 30; // five are usual

    bool Sweep(SquareMatrix<Size>& m) noexcept {
        constexpr double negligible = 0.5 * std::numeric_limits<double>::epsilon();
        bool turned = false;
        for (std::size_t p = Size - 1; p-- > 0;)
            for (std::size_t q = p + 1; q < Size; ++q) {
                if (!(std::fabs(m[p][q]) > negligible * std::fabs(m[q][q] - m[p][p]))) continue;
                Rotate(m, p, q);
                turned = true;
            }
        return turned;
    }

    /// A turn by which one element off the diagonal becomes zero: cosine, sine, and what that adds to one of the two
    /// elements on the diagonal and takes from the other. Written so that few roots and quotients wait for each other.
    struct Turning {
        Turning(double off, double half) noexcept {
            constexpr double smallTangent = 1e-8; // its square is below a rounding of 1
            if (std::fabs(off) < smallTangent * std::fabs(half)) {
                s = 0.5 * off / half;
                shift = s * off;
                return;
            }
            const double along = std::fabs(half) + std::sqrt(half * half + off * off);
            const double across = std::copysign(1.0, half) * off;
            const double perLength = 1.0 / std::sqrt(along * along + off * off);
            c = along * perLength;
            s = across * perLength;
            shift = across * off / along;
        }

        double c = 1.0, s, shift;
    };

    /// Makes m[p][q] zero.
    void Rotate(SquareMatrix<Size>& m, std::size_t p, std::size_t q) noexcept {
        const auto [c, s, shift] = Turning(m[p][q], 0.5 * (m[q][q] - m[p][p]));
        m[p][p] -= shift;
        m[q][q] += shift;
        m[p][q] = m[q][p] = 0.0;
        for (std::size_t i = 0; i < Size; ++i) {
            Turn(vectors[i][p], vectors[i][q], c, s);
            if (i == p || i == q) continue;
            Turn(m[i][p], m[i][q], c, s);
            m[p][i] = m[i][p];
            m[q][i] = m[i][q];
        }
    }

    static void Turn(double& a, double& b, double c, double s) noexcept {
        const double old = a;
        a = c * old - s * b;
        b = s * old + c * b;
    }

    void SortDescending() noexcept {
        for (std::size_t i = 0; i < Size; ++i)
            for (std::size_t k = i + 1; k < Size; ++k) {
                if (values[k] <= values[i]) continue;
                std::swap(values[i], values[k]);
                for (auto& row : vectors) std::swap(row[i], row[k]);
            }
    }
};
