#pragma once

#include <gtest/gtest.h>
#include <locale>
#include <memory>
#include <sstream>

/// Numbers with a decimal comma and a point between the thousands: 1.234,5.
struct CommaNumbers : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// While an object of this class exists, new streams write 4.5 as 4,5: the global locale has a decimal comma.
class CommaLocale {
public:
    CommaLocale()
        : before(std::locale::global(std::locale(std::locale::classic(), std::make_unique<CommaNumbers>().release()))) {
        std::ostringstream proof;
        proof << 4.5;
        EXPECT_EQ("4,5", proof.str());
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale() { std::locale::global(before); }

private:
    std::locale before;
};
