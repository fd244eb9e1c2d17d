#include "tests/neighbours/Neighbour.h"
#include "tests/support/HostLocale.h"

#include <clocale>
#include <locale>
#include <string>

/// The host's locale does not affect reading, writing and computing, and does not change.

namespace {

class Locales : public Neighbour {};

TEST_F(Locales, OfTheCLibraryHaveNoEffectAndDoNotChange) {
    ASSERT_NE(expected.file.find("e+02"), std::string::npos)
        << "the file must contain a number that a locale could change";
    for (const auto language : HostLocale::all) {
        const HostLocale host(language);
        SCOPED_TRACE(host.Name());
        const std::string before = std::setlocale(LC_ALL, nullptr);
        ExpectSame(job.Do(), expected);
        EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
    }
}

/// Numbers with a decimal comma, and points between thousands.
class OtherNumbers : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST_F(Locales, OfTheCPlusPlusLibraryHaveNoEffectAndDoNotChange) {
    const std::locale chosen(std::locale::classic(), new OtherNumbers); // owned by the locale
    const std::locale before = std::locale::global(chosen);
    const Results actual = job.Do();
    const bool isKept = std::locale() == chosen;
    std::locale::global(before);
    ExpectSame(actual, expected);
    EXPECT_TRUE(isKept);
}

} // namespace
