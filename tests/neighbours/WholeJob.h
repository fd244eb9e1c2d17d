#pragma once

#include "tests/support/AlignmentArray.h"
#include "tests/support/Bstr.h"

#include <filesystem>
#include <string>
#include <vector>

/// Everything that a caller can see of the component when it makes every call, good and bad, once: codes, texts of the
/// error records, and every number to its last bit. Two of them are equal or something outside has had a say.
struct Seen {
    std::vector<std::string> lines;
    std::string file; ///< what was saved
};

/// All calls, with what they are given made ready beforehand: nothing is computed while they are made but by the
/// component.
class WholeJob {
public:
    /// Files are made in `folder`. `number` makes the job another one: other angles, another head, other failures.
    explicit WholeJob(const std::filesystem::path& folder, int number = 0);

    /// On a new object.
    Seen Do();

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

/// Says in which line two jobs differ.
void ExpectSame(const Seen& actual, const Seen& expected);
