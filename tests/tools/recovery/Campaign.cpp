#include "StopTrials.h"
#include "tools/check/AllPairs.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <mutex>
#include <thread>

/// Stops every plan between two positions of the head at many places and prints the table of docs/recovery.md. With the
/// argument N it takes only every Nth plan.

namespace {

using namespace qmv40;

Tally TryAll(const std::string& geometry, std::size_t every) {
    const model::HeadModel head = TrialHead();
    const std::vector<model::HeadAngles> positions = check::HeadPositions(0);
    const std::size_t pairs = positions.size() * positions.size();
    std::atomic<std::size_t> next = 0;
    std::mutex adding;
    Tally all;
    const auto work = [&] {
        for (std::size_t i = next.fetch_add(every); i < pairs; i = next.fetch_add(every)) {
            const model::HeadAngles& from = positions[i / positions.size()];
            const model::HeadAngles& to = positions[i % positions.size()];
            const Tally tally = TryStopsOf(head, recovery::PlansFor(geometry, from, to), i);
            const std::scoped_lock lock(adding);
            all.Add(tally);
            if (all.plans % 1000 == 0) std::fprintf(stderr, "%zu plans\n", all.plans);
        }
    };
    std::vector<std::thread> workers;
    for (unsigned i = 0; i < std::max(1u, std::thread::hardware_concurrency()); ++i) workers.emplace_back(work);
    for (std::thread& worker : workers) worker.join();
    return all;
}

double Share(std::size_t part, std::size_t whole) {
    return whole == 0 ? 0.0 : 100.0 * static_cast<double>(part) / static_cast<double>(whole);
}

void PrintRow(const char* name, const Counts& counts) {
    std::printf("| %s | %zu | %.2f %% | %.2f %% | %zu | %zu |\n", name, counts.asked, Share(counts.right, counts.asked),
                Share(counts.unknown, counts.asked), counts.needless, counts.wrong);
}

void Print(const Tally& tally) {
    std::printf("%zu plans, %zu stops\n\n", tally.plans, tally.stops);
    std::printf(
        "| what is given | asked | right | unknown | unknown without need | wrong |\n|---|---|---|---|---|---|\n");
    for (std::size_t i = 0; i < givenCount; ++i) PrintRow(NameOf(static_cast<Given>(i)), tally.told[i]);
    std::printf("\n| position alone, by true state | asked | right | unknown | unknown without need | wrong |\n"
                "|---|---|---|---|---|---|\n");
    for (std::size_t i = 0; i < static_cast<std::size_t>(recovery::State::Unknown); ++i) {
        PrintRow(NameOf(static_cast<recovery::State>(i)), tally.positionOnlyByState[i]);
    }
    std::printf("\n%zu ways out judged: %zu missing, %zu with a problem\n", tally.ways, tally.waysMissing,
                tally.waysWithProblem);
    for (const std::string& example : tally.examples) std::printf("  %s\n", example.c_str());
    std::printf("%d passed, %d failed\n", tally.IsGood() ? 1 : 0, tally.IsGood() ? 0 : 1);
}

} // namespace

int main(int count, char** arguments) {
    const std::string geometry = (std::filesystem::temp_directory_path() / "qmv40-recover-head.ini").string();
    WriteTrialGeometry(geometry);
    const Tally tally =
        TryAll(geometry, count > 1 ? static_cast<std::size_t>(std::max(1, std::atoi(arguments[1]))) : 1);
    std::filesystem::remove(geometry);
    Print(tally);
    return tally.IsGood() ? 0 : 1;
}
