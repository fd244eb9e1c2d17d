// The short form of the campaign `./test mistakes`.

#include "tests/tools/diagnosis/PaperTrial.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

/// Captures of each kind. The printed seeds make a failure again: `qmv40_mistakes --kind ... --show ALL`.
constexpr int capturesOfAKind = 2;
std::uint64_t SeedOf(std::size_t kind, int i) { return 7000 + 100 * kind + static_cast<std::uint64_t>(i); }

struct Tried {
    const HumanKind& kind;
    std::uint64_t seed;
    PaperTrial trial;
};

/// Each capture is judged once for all tests.
const std::vector<Tried>& AllTried() {
    static const std::vector<Tried> all = [] {
        std::vector<Tried> tried;
        for (std::size_t kind = 0; kind < HumanKinds().size(); ++kind) {
            for (int i = 0; i < capturesOfAKind; ++i) {
                const std::uint64_t seed = SeedOf(kind, i);
                tried.push_back({HumanKinds()[kind], seed, PaperTrial(MakeCapture(HumanKinds()[kind], seed))});
            }
        }
        return tried;
    }();
    return all;
}

template <typename Look> void ForEachTrial(bool clean, Look&& look) {
    for (const Tried& each : AllTried()) {
        if (each.kind.isClean != clean) continue;
        SCOPED_TRACE(each.kind.name + (", seed " + std::to_string(each.seed)) + ": " + each.trial.Text());
        look(each.kind, each.trial);
    }
}

TEST(HumanMistakes, NeverGetAWrongGeometryAccepted) {
    ForEachTrial(
        false, [](const HumanKind&, const PaperTrial& trial) { EXPECT_FALSE(trial.IsAccepted() && trial.IsWrong()); });
}

TEST(HumanMistakes, AreNamedNearlyAlways) {
    int refused = 0, named = 0;
    ForEachTrial(false, [&](const HumanKind& kind, const PaperTrial& trial) {
        if (trial.IsAccepted() || kind.culprits.empty()) return;
        ++refused;
        if (trial.Names(kind.culprits)) ++named;
    });
    EXPECT_GE(refused, 90) << "few mistakes were refused";
    EXPECT_GE(named, refused * 95 / 100) << named << " of " << refused;
}

TEST(HumanMistakes, AreNotSeenWhereThereAreNone) {
    ForEachTrial(true,
                 [](const HumanKind&, const PaperTrial& trial) { EXPECT_TRUE(trial.IsAccepted() || trial.IsWrong()); });
}

/// Seeds of the campaign whose noise came out small by luck, or that have more noise in one set.
TEST(HumanMistakes, AreJudgedByNoiseThatFewPointsCannotTellWell) {
    const struct {
        const char* kind;
        std::uint64_t seed;
    } cases[] = {{"a short swivel arc", 85000474},
                 {"short arcs in both sets", 90400634},
                 {"four points on a short arc", 90600656},
                 {"uneven noise, more in the A set", 85300495},
                 {"uneven noise, more in the A set", 85300508},
                 {"uneven noise, more in the B set", 85400485},
                 {"uneven noise, more in the B set", 85400527},
                 {"rounded to 0.01 mm", 86000614}};
    for (const auto& each : cases) {
        const auto kind = std::ranges::find(HumanKinds(), std::string_view(each.kind), &HumanKind::name);
        ASSERT_NE(HumanKinds().end(), kind) << each.kind;
        const PaperTrial trial(MakeCapture(*kind, each.seed));
        EXPECT_FALSE(trial.IsAccepted() && trial.IsWrong()) << each.kind << ' ' << each.seed << ' ' << trial.Text();
        EXPECT_TRUE(!kind->isClean || trial.IsAccepted()) << each.kind << ' ' << each.seed << ' ' << trial.Text();
    }
}

} // namespace
