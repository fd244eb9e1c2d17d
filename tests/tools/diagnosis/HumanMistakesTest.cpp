// The short form of the campaign `./test mistakes`.

#include "tests/tools/diagnosis/PaperTrial.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

/// Captures of each kind. The printed seeds make a failure again: `qmv40_mistakes --kind ... --show ALL`.
constexpr int capturesOfAKind = 4;
std::uint64_t SeedOf(std::size_t kind, int i) { return 7000 + 100 * kind + static_cast<std::uint64_t>(i); }

template <typename Look> void ForEachTrial(bool clean, Look&& look) {
    for (std::size_t kind = 0; kind < HumanKinds().size(); ++kind) {
        if (HumanKinds()[kind].isClean != clean) continue;
        for (int i = 0; i < capturesOfAKind; ++i) {
            const PaperCapture capture = MakeCapture(HumanKinds()[kind], SeedOf(kind, i));
            const PaperTrial trial(capture);
            SCOPED_TRACE(HumanKinds()[kind].name + (", seed " + std::to_string(SeedOf(kind, i))) + ": " + trial.Text());
            look(HumanKinds()[kind], trial);
        }
    }
}

TEST(HumanMistakes, NeverGetAWrongGeometryAccepted) {
    ForEachTrial(
        false, [](const HumanKind&, const PaperTrial& trial) { EXPECT_FALSE(trial.IsAccepted() && trial.IsWrong()); });
}

TEST(HumanMistakes, AreNamedNearlyAlways) {
    int refused = 0, named = 0;
    ForEachTrial(false, [&](const HumanKind& kind, const PaperTrial& trial) {
        if (trial.IsAccepted()) return;
        ++refused;
        if (trial.Names(kind.culprits)) ++named;
    });
    EXPECT_GE(refused, 200) << "few mistakes were refused";
    EXPECT_GE(named, refused * 95 / 100) << named << " of " << refused;
}

TEST(HumanMistakes, AreNotSeenWhereThereAreNone) {
    ForEachTrial(true,
                 [](const HumanKind&, const PaperTrial& trial) { EXPECT_TRUE(trial.IsAccepted() || trial.IsWrong()); });
}

} // namespace
