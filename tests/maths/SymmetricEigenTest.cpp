#include "maths/fit/SymmetricEigen.h"

#include <gtest/gtest.h>

#include <random>

/// Eigenvalues and eigenvectors are checked by their definition.

namespace {

using qmv40::fit::SquareMatrix;
using qmv40::fit::SymmetricEigen;

using Random = std::mt19937_64;

/// The rounding of the sums below, for matrices with elements up to 1.
constexpr double fewRoundings = 1e-14;

template <std::size_t Size> SquareMatrix<Size> RandomSymmetric(Random& random) {
    std::uniform_real_distribution<double> element(-1.0, 1.0);
    SquareMatrix<Size> matrix{};
    for (std::size_t i = 0; i < Size; ++i)
        for (std::size_t k = i; k < Size; ++k) matrix[i][k] = matrix[k][i] = element(random);
    return matrix;
}

/// One element of a matrix times a vector, a column of `vectors`.
template <std::size_t Size>
double Times(const SquareMatrix<Size>& matrix, std::size_t row, const SquareMatrix<Size>& vectors, std::size_t column) {
    double sum = 0.0;
    for (std::size_t i = 0; i < Size; ++i) sum += matrix[row][i] * vectors[i][column];
    return sum;
}

template <std::size_t Size> double Dot(const SquareMatrix<Size>& vectors, std::size_t left, std::size_t right) {
    double sum = 0.0;
    for (std::size_t i = 0; i < Size; ++i) sum += vectors[i][left] * vectors[i][right];
    return sum;
}

template <std::size_t Size> void ExpectEigen(const SquareMatrix<Size>& matrix) {
    const SymmetricEigen<Size> eigen(matrix);
    for (std::size_t k = 0; k < Size; ++k) {
        EXPECT_TRUE(k == 0 || eigen.values[k - 1] >= eigen.values[k]) << "largest first";
        for (std::size_t i = 0; i < Size; ++i) {
            EXPECT_NEAR(Times(matrix, i, eigen.vectors, k), eigen.values[k] * eigen.vectors[i][k], fewRoundings);
            EXPECT_NEAR(Dot(eigen.vectors, i, k), i == k ? 1.0 : 0.0, fewRoundings);
        }
    }
}

template <std::size_t Size> void ExpectEigenOfMany(Random& random) {
    for (int round = 0; round < 300; ++round) {
        SCOPED_TRACE(testing::Message() << "seed 43, size " << Size << ", round " << round);
        ExpectEigen(RandomSymmetric<Size>(random));
    }
}

} // namespace

TEST(SymmetricEigen, VectorsAreOrthogonalAndTheMatrixScalesThem) {
    Random random(43);
    ExpectEigenOfMany<3>(random);
    ExpectEigenOfMany<6>(random);
}

TEST(SymmetricEigen, ValuesOfADiagonalMatrixAreItsElementsInOrder) {
    const SymmetricEigen<3> eigen(SquareMatrix<3>{{{2.0, 0.0, 0.0}, {0.0, 5.0, 0.0}, {0.0, 0.0, -1.0}}});
    EXPECT_EQ(eigen.values, (std::array<double, 3>{5.0, 2.0, -1.0}));
    EXPECT_EQ(eigen.vectors, (SquareMatrix<3>{{{0.0, 1.0, 0.0}, {1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}}}));
}

TEST(SymmetricEigen, FindsTheSmallRotationOfAnAlmostDiagonalMatrix) {
    // The eigenvectors of [[1, t], [t, 0]] are rotated by half the arctangent of 2 t. For a small t this is t.
    for (const double t : {1e-6, 1e-9, 1e-12}) {
        const SymmetricEigen<3> eigen(SquareMatrix<3>{{{1.0, t, 0.0}, {t, 0.0, 0.0}, {0.0, 0.0, -1.0}}});
        EXPECT_NEAR(std::fabs(eigen.vectors[1][0]), t, 1e-11 * t) << t;
        EXPECT_NEAR(eigen.values[1], -t * t, 1e-11 * t * t) << t;
    }
}

TEST(SymmetricEigen, KeepsTheDigitsOfSmallValuesOfAGradedMatrix) {
    // [[2, 1], [1, 1]], whose determinant is 1, with scaled rows and columns. The small eigenvalue is the determinant
    // divided by the large one.
    const double small = 1e-10;
    const SymmetricEigen<3> eigen(SquareMatrix<3>{{{2.0, small, 0.0}, {small, small * small, 0.0}, {0.0, 0.0, 0.0}}});
    EXPECT_NEAR(eigen.values[1], small * small / 2.0, 1e-14 * small * small);
}
