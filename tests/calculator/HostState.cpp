#include "calculator/PreparedCalculator.h"
#include "support/Bstr.h"
#include "support/ReferenceHeads.h"
#include "support/TemporaryFolder.h"

#include <cfenv>
#include <clocale>
#include <fstream>
#include <iterator>
#include <locale>

/// Nothing that the host process has set for itself, locale or floating-point environment, changes a result.

namespace {

class CommaForPoint : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// The C++ library's locale, for the length of a scope.
class GlobalLocale {
public:
    explicit GlobalLocale(const std::locale& chosen) : before(std::locale::global(chosen)) {}
    GlobalLocale(const GlobalLocale&) = delete;
    GlobalLocale& operator=(const GlobalLocale&) = delete;
    ~GlobalLocale() { std::locale::global(before); }

private:
    std::locale before;
};

/// The C library's locale, for the length of a scope, with a comma for the decimal point where the machine has one.
class CLocaleWithComma {
public:
    CLocaleWithComma() {
        for (const char* const name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "German", "deu"})
            if (std::setlocale(LC_ALL, name) != nullptr && *std::localeconv()->decimal_point == ',') return;
        std::setlocale(LC_ALL, "C");
    }
    CLocaleWithComma(const CLocaleWithComma&) = delete;
    CLocaleWithComma& operator=(const CLocaleWithComma&) = delete;
    ~CLocaleWithComma() { std::setlocale(LC_ALL, "C"); }

    bool IsThere() const { return *std::localeconv()->decimal_point == ','; }
};

class HostState : public PreparedCalculator {
protected:
    struct Outcome {
        std::array<double, numbersInAPlan> moves;
        std::string file;
        bool operator==(const Outcome&) const = default;
    };

    /// Enters, saves, loads and plans, with settings.
    Outcome WholeJob() {
        settings.SetText("Head Centre To Drive Cup X Offset", "-7.25");
        settings.SetText("Locked To Unlocked Lever Rotation", "1.205e2");
        const TemporaryFolder folder;
        const auto path = folder.Path("head.ini");
        const auto calculator = WithGeometry();
        EXPECT_EQ(calculator->SaveHeadGeometryToFile(Bstr(path).Address()), S_OK);
        EXPECT_EQ(calculator->LoadHeadGeometryFromFile(Bstr(path).Address()), S_OK);
        EXPECT_EQ(calculator->SetCurrentHeadPosition(30.0, -75.0), S_OK);
        RequiredMoves moves{};
        EXPECT_EQ(calculator->CalculateMove(60.0, 120.0, &moves), S_OK);
        std::ifstream file(path, std::ios::binary);
        return {NumbersOf(moves), {std::istreambuf_iterator<char>(file), {}}};
    }
};

TEST_F(HostState, OfTheCPlusPlusLibrarysLocaleChangesNothing) {
    const Outcome expected = WholeJob();
    ASSERT_NE(expected.file.find("e+02"), std::string::npos);
    const GlobalLocale comma(std::locale(std::locale::classic(), new CommaForPoint)); // owned by the locale
    EXPECT_EQ(WholeJob(), expected);
}

TEST_F(HostState, OfTheCLibrarysLocaleChangesNothing) {
    const Outcome expected = WholeJob();
    const CLocaleWithComma locale;
    if (!locale.IsThere()) GTEST_SKIP() << "this machine has no locale with a decimal comma";
    EXPECT_EQ(WholeJob(), expected);
}

TEST_F(HostState, OfTheRoundingModeChangesNothingAndIsNotChanged) {
    const auto calculator = At(30.0, -75.0);
    RequiredMoves expected{};
    ASSERT_EQ(calculator->CalculateMove(60.0, 120.0, &expected), S_OK);
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO}) {
        SCOPED_TRACE(mode);
        RequiredMoves moves{};
        XYZData start{};
        std::fesetround(mode);
        const HRESULT set = calculator->SetCurrentHeadPosition(30.0, -75.0);
        const HRESULT started = calculator->GetStartPosition(&start);
        const HRESULT planned = calculator->CalculateMove(60.0, 120.0, &moves);
        const int after = std::fegetround();
        std::fesetround(FE_TONEAREST);
        EXPECT_EQ(after, mode);
        EXPECT_EQ(set, S_OK);
        EXPECT_EQ(started, S_OK);
        EXPECT_EQ(planned, S_OK);
        EXPECT_EQ(start, expected.ApproachUnLockLever);
        EXPECT_EQ(NumbersOf(moves), NumbersOf(expected));
    }
}

TEST_F(HostState, OfTheRoundingModeIsPutBackAlsoWhenAMoveIsRefusedByAThrow) {
    const auto calculator = At(0.0, 0.0);
    RequiredMoves moves{};
    HRESULT thrown = S_OK;
    std::fesetround(FE_UPWARD);
    try {
        calculator->CalculateMove(7.0, 0.0, &moves);
    } catch (const HRESULT code) {
        thrown = code;
    }
    const int after = std::fegetround();
    std::fesetround(FE_TONEAREST);
    EXPECT_EQ(after, FE_UPWARD);
    EXPECT_TRUE(FAILED(thrown));
}

TEST_F(HostState, GetsNoFloatingPointFlagsOfOurs) {
    const auto calculator = At(30.0, -75.0);
    RequiredMoves moves{};
    std::feclearexcept(FE_ALL_EXCEPT);
    const HRESULT planned = calculator->CalculateMove(60.0, 120.0, &moves);
    const int raised = std::fetestexcept(FE_INEXACT);
    EXPECT_EQ(planned, S_OK);
    EXPECT_EQ(raised, 0);
}

} // namespace
