#pragma once

#include <gtest/gtest.h>
#include <locale>
#include <memory>
#include <sstream>

/// Numbers as much of the world writes them: 1.234,5.
struct CommaNumbers : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// While it lives streams that are made write 4,5 for 4.5.
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
