#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

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
        constexpr double epsilon = std::numeric_limits<double>::epsilon();
        bool turned = false;
        for (std::size_t p = 0; p < Size; ++p)
            for (std::size_t q = p + 1; q < Size; ++q) {
                const double negligible = 0.5 * epsilon * std::sqrt(std::fabs(m[p][p])) * std::sqrt(std::fabs(m[q][q]));
                if (!(std::fabs(m[p][q]) > negligible)) continue;
                Rotate(m, p, q);
                turned = true;
            }
        return turned;
    }

    void Rotate(SquareMatrix<Size>& m, std::size_t p, std::size_t q) noexcept {
        const double theta = 0.5 * (m[q][q] - m[p][p]) / m[p][q];
        const double t = std::copysign(1.0, theta) / (std::fabs(theta) + std::sqrt(theta * theta + 1.0));
        const double c = 1.0 / std::sqrt(t * t + 1.0), s = t * c;
        const double shift = t * m[p][q];
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
        for (std::size_t i = 0; i < Size; ++i) {
            const auto largest = static_cast<std::size_t>(
                std::max_element(values.begin() + static_cast<std::ptrdiff_t>(i), values.end()) - values.begin());
            std::swap(values[i], values[largest]);
            for (auto& row : vectors) std::swap(row[i], row[largest]);
        }
    }
};
