#include "StopTrials.h"

#include "support/TemporaryFolder.h"
#include "tools/check/AllPairs.h"

#include <gtest/gtest.h>
#include <numeric>
#include <random>

namespace {

using namespace qmv40;

/// Plans with the largest turns of B (360 degrees), plans with equal start and target, a few others, and random ones.
std::vector<std::pair<model::HeadAngles, model::HeadAngles>> SampleOfPlans(std::uint64_t seed) {
    std::vector<std::pair<model::HeadAngles, model::HeadAngles>> sample{
        {{0, -180}, {0, 180}}, {{90, 180}, {90, -180}}, {{45, -180}, {60, 180}}, {{0, 0}, {0, 0}},
        {{90, 90}, {90, 90}},  {{0, 90}, {0, -90}},     {{75, 0}, {60, 120}},    {{15, -165}, {0, 180}}};
    const std::vector<model::HeadAngles> positions = check::HeadPositions(0);
    std::mt19937_64 random(seed);
    std::uniform_int_distribution<std::size_t> any(0, positions.size() - 1);
    while (sample.size() < 300) sample.emplace_back(positions[any(random)], positions[any(random)]);
    return sample;
}

std::string Lines(const std::vector<std::string>& examples) {
    return std::accumulate(examples.begin(), examples.end(), std::string(),
                           [](const std::string& all, const std::string& each) { return all + each + "\n"; });
}

TEST(StoppedPlans, HaveARightStateAndSafeWaysOut) {
    constexpr std::uint64_t seed = 20'260'316;
    SCOPED_TRACE("seed " + std::to_string(seed));
    const TemporaryFolder folder;
    const std::string geometry = folder.Name("head.ini");
    WriteTrialGeometry(geometry);
    const model::HeadModel head = TrialHead();
    Tally tally;
    for (const auto& [from, to] : SampleOfPlans(seed)) {
        tally.Add(TryStopsOf(head, recovery::PlansFor(geometry, from, to), seed + tally.plans));
    }
    EXPECT_TRUE(tally.IsGood()) << Lines(tally.examples);
    EXPECT_EQ(300u * 19u * 12u, tally.stops);
    const Counts& known = tally.Of(Given::MoveKnown);
    EXPECT_EQ(known.asked, known.right) << "with the known move every state is certain";
    const Counts& positionOnly = tally.Of(Given::PositionOnly);
    EXPECT_GT(10 * positionOnly.right, 8 * positionOnly.asked) << "most positions belong to one state only";
    EXPECT_GT(tally.Of(Given::Jogged).asked, tally.stops) << "most jogs end off the plan";
}

} // namespace
