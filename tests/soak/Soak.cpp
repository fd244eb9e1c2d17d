#include "tests/soak/Client.h"
#include "tests/soak/ProcessFigures.h"
#include "tests/support/SettingsFixture.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>

/// soak [calls]: makes this number of calls of all kinds, right and wrong, with one calculator and then with many that
/// are created and deleted. Compares each result with that of a new calculator, and the process's memory with its size
/// before.

namespace {

constexpr int stretches = 10;

/// Larger differences count as growth. Smaller ones are freed memory that the allocators keep.
constexpr std::size_t heapTolerance = 64U << 10;
constexpr std::size_t residentTolerance = 2U << 20;

void Print(const SharedState& shared, const ProcessFigures& figures) {
    std::printf("%10ld calls  %8zu KiB resident  %10zu bytes in use  %6ld blocks  %3ld open files\n", shared.calls,
                figures.residentBytes >> 10, figures.heapBytes, figures.blocks, figures.openFiles);
    std::fflush(stdout);
}

bool IsFlat(const ProcessFigures& before, const ProcessFigures& after) {
    return after.blocks == before.blocks && after.openFiles == before.openFiles &&
           after.heapBytes <= before.heapBytes + heapTolerance &&
           after.residentBytes <= before.residentBytes + residentTolerance;
}

/// Makes `calls` calls in several stretches and compares the memory after the first one with that after the last.
/// `setFixedState` sets the same state each time.
bool Soak(const char* what, SharedState& shared, long calls, const std::function<void()>& call,
          const std::function<void()>& setFixedState) {
    std::printf("%s\n", what);
    const long start = shared.calls;
    ProcessFigures warm{};
    for (int stretch = 1; stretch <= stretches; ++stretch) {
        while (shared.calls - start < calls / stretches * stretch) call();
        setFixedState();
        const ProcessFigures now = ProcessFigures::Now();
        Print(shared, now);
        if (stretch == 1) warm = now;
        if (stretch == stretches && !IsFlat(warm, now)) {
            std::printf("the process has grown\n");
            return false;
        }
    }
    return true;
}

bool SoakOneObject(SharedState& shared, long calls) {
    Client client(shared);
    return Soak(
        "one calculator", shared, calls, [&] { client.Call(); }, [&] { client.SetFixedState(); });
}

bool SoakManyObjects(SharedState& shared, long calls) {
    constexpr std::size_t most = 64;
    constexpr std::size_t callsOfALife = 500;
    std::vector<std::unique_ptr<Client>> clients(most);
    const auto renew = [&](std::unique_ptr<Client>& client) { client = std::make_unique<Client>(shared); };
    for (auto& client : clients) renew(client);
    return Soak(
        "many calculators, created and deleted", shared, calls,
        [&] {
            auto& client = clients[shared.Choose(most)];
            if (shared.Choose(callsOfALife) == 0) renew(client);
            client->Call();
        },
        [&] {
            for (auto& client : clients) {
                renew(client);
                client->SetFixedState();
            }
        });
}

bool Run(long calls, std::uint64_t seed) {
    SettingsFixture settings;
    settings.SetText("Head Centre To Drive Cup X Offset", "-7.25");
    settings.SetText("Locked To Unlocked Lever Rotation", "120");
    const TemporaryFolder folder;
    const Answers answers(folder.Path());
    SharedState shared(folder.Path(), answers, seed);
    const auto start = std::chrono::steady_clock::now();
    const bool isFlat = SoakOneObject(shared, calls / 2) && SoakManyObjects(shared, calls - calls / 2);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    std::printf("%ld calls in %.1f s, all results equal to those of a new calculator: %s\n", shared.calls, time.count(),
                isFlat ? "memory and files flat" : "NOT flat");
    return isFlat;
}

} // namespace

int main(int count, char** arguments) {
    MakeFiguresExact();
    const long calls = count > 1 ? std::atol(arguments[1]) : 1000000;
    const std::uint64_t seed = count > 2 ? std::strtoull(arguments[2], nullptr, 10) : 1;
    try {
        return Run(calls, seed) ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& failure) {
        std::printf("seed %llu: %s\n", static_cast<unsigned long long>(seed), failure.what());
        return EXIT_FAILURE;
    }
}
