#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace qmv40::diagnosis {

/// The normal equations of a small linear least-squares problem: a dozen unknowns at most are meant.
/// Unknowns may have any units: the equations are scaled to a unit diagonal before they are solved.
class NormalEquations {
public:
    explicit NormalEquations(std::size_t unknowns)
        : size(unknowns), matrix(unknowns * unknowns, 0.0), right(unknowns, 0.0) {}

    /// One observation: how it changes with each unknown, and by how much it is to change.
    void Add(std::span<const double> derivatives, double wanted);

    /// The step that brings the observations nearest to what is wanted, its diagonal raised by the share `damping`.
    /// Nothing when the observations do not determine it.
    std::optional<std::vector<double>> Solve(double damping = 0.0) const;

    /// Covariances of the unknowns when every observation has the variance 1: row by row. Nothing when the observations
    /// do not determine the unknowns.
    std::optional<std::vector<double>> Covariance() const;

private:
    class Factor;

    std::size_t size;
    std::vector<double> matrix; ///< row by row
    std::vector<double> right;
};

} // namespace qmv40::diagnosis
