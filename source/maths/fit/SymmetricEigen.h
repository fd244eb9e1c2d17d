#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <utility>

namespace qmv40::fit {

template <std::size_t Size> using SquareMatrix = std::array<std::array<double, Size>, Size>;

/// Eigenvalues, largest first, and unit eigenvectors (the columns of `vectors`, in the same order) of a symmetric
/// matrix, by cyclic Jacobi rotations (Golub and Van Loan, Matrix Computations, section 8.5). Small eigenvalues of a
/// graded matrix keep their own relative accuracy. Ends after 30 sweeps at the latest; five are usual.
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
    static constexpr int sweepLimit = 30;

    bool Sweep(SquareMatrix<Size>& m) noexcept {
        constexpr double negligible = 0.5 * std::numeric_limits<double>::epsilon();
        bool rotated = false;
        for (std::size_t p = Size - 1; p-- > 0;)
            for (std::size_t q = p + 1; q < Size; ++q) {
                if (!(std::fabs(m[p][q]) > negligible * std::fabs(m[q][q] - m[p][p]))) continue;
                Rotate(m, p, q);
                rotated = true;
            }
        return rotated;
    }

    /// The rotation that makes the off-diagonal element `off` zero. `half` is half the difference of the two diagonal
    /// elements. The rotation subtracts `shift` from the first diagonal element and adds it to the second.
    struct JacobiRotation {
        JacobiRotation(double off, double half) noexcept {
            constexpr double smallTangent = 1e-8; // 1 plus its square is rounded to 1
            constexpr double squareUnderflows = 0x1p-500, farLarger = 0x1p600;
            if (std::fabs(off) < smallTangent * std::fabs(half)) {
                s = 0.5 * off / half;
                shift = s * off;
                return;
            }
            // Numbers whose squares underflow are enlarged first. The angle stays the same.
            if (std::max(std::fabs(off), std::fabs(half)) < squareUnderflows) {
                *this = JacobiRotation(off * farLarger, half * farLarger);
                shift /= farLarger;
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
        const auto [c, s, shift] = JacobiRotation(m[p][q], 0.5 * (m[q][q] - m[p][p]));
        m[p][p] -= shift;
        m[q][q] += shift;
        m[p][q] = m[q][p] = 0.0;
        for (std::size_t i = 0; i < Size; ++i) {
            RotatePair(vectors[i][p], vectors[i][q], c, s);
            if (i == p || i == q) continue;
            RotatePair(m[i][p], m[i][q], c, s);
            m[p][i] = m[i][p];
            m[q][i] = m[i][q];
        }
    }

    static void RotatePair(double& a, double& b, double c, double s) noexcept {
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

} // namespace qmv40::fit
