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

void Print(const Workshop& workshop, const ProcessFigures& figures) {
    std::printf("%10ld calls  %8zu KiB resident  %10zu bytes in use  %6ld blocks  %3ld open files\n", workshop.calls,
                figures.residentBytes >> 10, figures.heapBytes, figures.blocks, figures.openFiles);
    std::fflush(stdout);
}

bool IsFlat(const ProcessFigures& before, const ProcessFigures& after) {
    return after.blocks == before.blocks && after.openFiles == before.openFiles &&
           after.heapBytes <= before.heapBytes + heapTolerance &&
           after.residentBytes <= before.residentBytes + residentTolerance;
}

/// Makes `calls` calls in several parts and compares the memory after the first part with that after the last. `settle`
/// sets the same state each time.
bool Soak(const char* what, Workshop& workshop, long calls, const std::function<void()>& call,
          const std::function<void()>& settle) {
    std::printf("%s\n", what);
    const long start = workshop.calls;
    ProcessFigures warm{};
    for (int stretch = 1; stretch <= stretches; ++stretch) {
        while (workshop.calls - start < calls / stretches * stretch) call();
        settle();
        const ProcessFigures now = ProcessFigures::Now();
        Print(workshop, now);
        if (stretch == 1) warm = now;
        if (stretch == stretches && !IsFlat(warm, now)) {
            std::printf("the process has grown\n");
            return false;
        }
    }
    return true;
}

bool SoakOneObject(Workshop& workshop, long calls) {
    Client client(workshop);
    return Soak(
        "one calculator", workshop, calls, [&] { client.Call(); }, [&] { client.Settle(); });
}

bool SoakManyObjects(Workshop& workshop, long calls) {
    constexpr std::size_t most = 64;
    constexpr std::size_t callsOfALife = 500;
    std::vector<std::unique_ptr<Client>> clients(most);
    const auto renew = [&](std::unique_ptr<Client>& client) { client = std::make_unique<Client>(workshop); };
    for (auto& client : clients) renew(client);
    return Soak(
        "many calculators, created and deleted", workshop, calls,
        [&] {
            auto& client = clients[workshop.Choose(most)];
            if (workshop.Choose(callsOfALife) == 0) renew(client);
            client->Call();
        },
        [&] {
            for (auto& client : clients) {
                renew(client);
                client->Settle();
            }
        });
}

bool Run(long calls, std::uint64_t seed) {
    SettingsFixture settings;
    settings.SetText("Head Centre To Drive Cup X Offset", "-7.25");
    settings.SetText("Locked To Unlocked Lever Rotation", "120");
    const TemporaryFolder folder;
    const Answers answers(folder.Path());
    Workshop workshop(folder.Path(), answers, seed);
    const auto start = std::chrono::steady_clock::now();
    const bool isFlat = SoakOneObject(workshop, calls / 2) && SoakManyObjects(workshop, calls - calls / 2);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    std::printf("%ld calls in %.1f s, all results equal to those of a new calculator: %s\n", workshop.calls,
                time.count(), isFlat ? "memory and files flat" : "NOT flat");
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
