#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace qmv40::diagnosis::fit {

/// The normal equations of a small linear least-squares problem: six unknowns for a circle, seven for a head and some
/// more for each of its errors. Unknowns may have different units: the equations are scaled to a unit diagonal before
/// they are solved.
class NormalEquations {
public:
    explicit NormalEquations(std::size_t unknowns)
        : size(unknowns), matrix(unknowns * unknowns, 0.0), right(unknowns, 0.0) {}

    /// Adds one observation: its derivatives with respect to the unknowns, the change that is wanted of it (measured
    /// minus modelled), and the weight of its square.
    void Add(std::span<const double> derivatives, double wanted, double weight = 1.0);

    /// The step that brings the observations nearest to what is wanted. Each element of the diagonal is raised by the
    /// share `damping` of itself. Empty when the observations do not determine the step.
    std::optional<std::vector<double>> Solve(double damping = 0.0) const;

    /// The covariances of the unknowns when every observation has the variance 1. Empty when the observations do not
    /// determine the unknowns.
    std::optional<std::vector<std::vector<double>>> Covariance() const;

private:
    class Factor;

    std::size_t size;
    std::vector<double> matrix; ///< row by row, up to the diagonal
    std::vector<double> right;
};

} // namespace qmv40::diagnosis::fit
