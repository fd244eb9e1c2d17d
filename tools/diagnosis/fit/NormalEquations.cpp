#include "tools/diagnosis/fit/NormalEquations.h"

#include <cmath>

namespace qmv40::diagnosis::fit {

/// The Cholesky factor of the scaled matrix.
class NormalEquations::Factor {
public:
    Factor(const NormalEquations& equations, double damping)
        : size(equations.size), scale(size, 1.0), lower(equations.matrix) {
        for (std::size_t i = 0; i < size; ++i) {
            const double diagonal = lower[i * size + i];
            if (diagonal > 0.0) scale[i] = 1.0 / std::sqrt(diagonal);
        }
        for (std::size_t i = 0; i < size; ++i) {
            for (std::size_t j = 0; j <= i; ++j) lower[i * size + j] *= scale[i] * scale[j];
            lower[i * size + i] += damping;
        }
        isDefinite = Factorise();
    }

    bool IsDefinite() const { return isDefinite; }

    std::vector<double> Solve(std::vector<double> x) const {
        for (std::size_t i = 0; i < size; ++i) {
            x[i] *= scale[i];
            for (std::size_t k = 0; k < i; ++k) x[i] -= lower[i * size + k] * x[k];
            x[i] /= lower[i * size + i];
        }
        for (std::size_t i = size; i-- > 0;) {
            for (std::size_t k = i + 1; k < size; ++k) x[i] -= lower[k * size + i] * x[k];
            x[i] /= lower[i * size + i];
        }
        for (std::size_t i = 0; i < size; ++i) x[i] *= scale[i];
        return x;
    }

private:
    bool Factorise() {
        // When an unknown is a linear combination of the ones before it, only rounding is left of its diagonal element.
        constexpr double rounding = 1e-14;
        for (std::size_t i = 0; i < size; ++i) {
            for (std::size_t j = 0; j <= i; ++j) {
                double sum = lower[i * size + j];
                for (std::size_t k = 0; k < j; ++k) sum -= lower[i * size + k] * lower[j * size + k];
                if (i == j && !(sum > rounding)) return false;
                lower[i * size + j] = i == j ? std::sqrt(sum) : sum / lower[j * size + j];
            }
        }
        return true;
    }

    std::size_t size;
    std::vector<double> scale;
    std::vector<double> lower;
    bool isDefinite = false;
};

void NormalEquations::Add(std::span<const double> derivatives, double wanted, double weight) {
    for (std::size_t i = 0; i < size; ++i) {
        if (derivatives[i] == 0.0) continue;
        const double weighted = weight * derivatives[i];
        right[i] += weighted * wanted;
        for (std::size_t j = 0; j <= i; ++j) matrix[i * size + j] += weighted * derivatives[j];
    }
}

std::optional<std::vector<double>> NormalEquations::Solve(double damping) const {
    const Factor factor(*this, damping);
    if (!factor.IsDefinite()) return std::nullopt;
    return factor.Solve(right);
}

std::optional<std::vector<std::vector<double>>> NormalEquations::Covariance() const {
    const Factor factor(*this, 0.0);
    if (!factor.IsDefinite()) return std::nullopt;
    std::vector<std::vector<double>> covariance;
    for (std::size_t i = 0; i < size; ++i) {
        std::vector<double> unit(size, 0.0);
        unit[i] = 1.0;
        covariance.push_back(factor.Solve(std::move(unit)));
    }
    return covariance;
}

} // namespace qmv40::diagnosis::fit
