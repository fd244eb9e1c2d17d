#pragma once

#include <string>
#include <vector>

namespace qmv40::selfcheck {

/// The signs and constants of the component, compared with numbers that were worked out by hand. The component is used
/// through its public interface alone.

/// One number or one point: what was worked out, and what the build gives.
struct SelfCheck {
    std::string what;
    std::vector<double> expected;
    std::vector<double> got; ///< as many
    const char* unit;
    double tolerance;

    /// The largest difference of a coordinate; not-a-number when one is that.
    double Difference() const;
    bool IsPassed() const { return Difference() <= tolerance; }
};

struct SelfCheckGroup {
    std::string title;
    std::string source; ///< where the expected numbers come from, a sentence
    std::vector<SelfCheck> checks;
};

/// Runs all checks with the built-in dimensions of the head, whatever the machine's settings are. Nothing is written.
/// A part of the build that fails altogether is thrown as ComponentError.
std::vector<SelfCheckGroup> RunSelfChecks();

} // namespace qmv40::selfcheck
