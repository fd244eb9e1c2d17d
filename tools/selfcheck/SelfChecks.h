#pragma once

#include <string>
#include <vector>

namespace qmv40::selfcheck {

/// The signs and constants of the component, compared with numbers that were worked out without it: by hand, from
/// closed formulas, or from the design. One check compares the end of an arc of a plan with a later position of the
/// same plan. The component is used only through its public interface.

/// One number or one point: expected, and as the build computes it.
struct SelfCheck {
    std::string what;
    std::vector<double> expected;
    std::vector<double> got; ///< as many as expected
    const char* unit;
    double tolerance;

    /// The largest difference of a coordinate; not-a-number when a coordinate is not a number.
    double Difference() const;
    bool IsPassed() const { return Difference() <= tolerance; }
};

struct SelfCheckGroup {
    std::string title;
    std::string source; ///< a sentence: where the expected numbers come from
    std::vector<SelfCheck> checks;
};

/// Runs all checks with the built-in dimensions of the head. The machine's settings have no influence. No file
/// is written; on Windows there is a temporary registry key while the checks run. Throws ComponentError when a call of
/// the component fails.
std::vector<SelfCheckGroup> RunSelfChecks();

} // namespace qmv40::selfcheck
