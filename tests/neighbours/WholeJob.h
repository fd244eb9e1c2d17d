#pragma once

#include "tests/support/AlignmentArray.h"
#include "tests/support/Bstr.h"

#include <filesystem>
#include <string>
#include <vector>

/// All results of the calls of a WholeJob: codes, texts of the error records, and every number to its last bit. If two
/// of them differ, something outside the component has affected it.
struct Results {
    std::vector<std::string> lines;
    std::string file; ///< the content of the saved file
};

/// Calls of all eight methods, accepted ones and refused ones. Their arguments are prepared before, so that only the
/// component computes during the calls.
class WholeJob {
public:
    /// Files are created in `folder`. A job with another `number` has another head and other angles, right and wrong.
    explicit WholeJob(const std::filesystem::path& folder, int number = 0);

    /// Makes the calls with a new object.
    Results Do();

private:
    double fromA, fromB, toA, toB;
    double wrongA, wrongB;
    std::filesystem::path path;
    Bstr name;
    Bstr nowhere;
    AlignmentArray aSet;
    AlignmentArray bSet;
    AlignmentArray fewPoints;
};

/// Expects the same lines and the same file.
void ExpectSame(const Results& actual, const Results& expected);
