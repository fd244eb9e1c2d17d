#include "tests/support/ChildProcess.h"
#include "tests/support/RefusedSaves.h"
#include "tests/support/Rounds.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TwoGeometries.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <iostream>
#include <random>
#include <thread>
#include <vector>

using namespace qmv40;

/// A process that saves is killed, or others save at the same time: the file always contains one whole geometry and its
/// other lines.

namespace {

namespace fs = std::filesystem;

/// Saves. True for a success, and for a refusal that is permitted while others have the file open.
bool IsDoneOrRefused(IQMVCalculator2& calculator, BSTR* name, int& saved) {
    const Raised save = ReturnedBy([&] { return calculator.SaveHeadGeometryToFile(name); });
    if (save.code == S_OK) ++saved;
    return save.code == S_OK || IsPermittedRefusal(save);
}

int SavesInTurnForEver(const fs::path& path) {
    TemporaryFolder own;
    const auto first = TwoGeometries::Calculator(own.Path(), 1);
    const auto second = TwoGeometries::Calculator(own.Path(), 2);
    Bstr name(path);
    fs::remove_all(own.Path()); // a killed process cannot remove its folder
    int saved = 0;
    while (IsDoneOrRefused(*second.Get(), name.Address(), saved) &&
           IsDoneOrRefused(*first.Get(), name.Address(), saved)) {
    }
    return 1;
}

constexpr int savesOfAnother = 60;

/// Saves the two geometries in turn, so that each save changes the file.
int SavesOften(const fs::path& path, int first) {
    const TemporaryFolder own;
    const ComPointer<IQMVCalculator2> calculators[] = {TwoGeometries::Calculator(own.Path(), first),
                                                       TwoGeometries::Calculator(own.Path(), 3 - first)};
    Bstr name(path);
    int saved = 0;
    for (int i = 0; i < Rounds(savesOfAnother); ++i)
        if (!IsDoneOrRefused(*calculators[i % 2].Get(), name.Address(), saved)) return 1;
    std::cout << Rounds(savesOfAnother) - saved << " of " << Rounds(savesOfAnother) << " saves refused" << std::endl;
    return saved > 0 ? 0 : 1;
}

const ChildJob savesInTurn("saves in turn", SavesInTurnForEver);
const ChildJob savesFirst("saves geometry 1 first", [](const fs::path& path) { return SavesOften(path, 1); });
const ChildJob savesSecond("saves geometry 2 first", [](const fs::path& path) { return SavesOften(path, 2); });

std::size_t OtherFilesIn(const fs::path& folder) {
    std::size_t others = 0;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename() != "head.ini") ++others;
    return others;
}

/// Removes and counts the copies that a killed process left.
std::size_t RemoveOthersIn(const fs::path& folder) {
    std::vector<fs::path> others;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.path().filename() != "head.ini") others.push_back(entry.path());
    for (const fs::path& other : others) fs::remove(other);
    return others.size();
}

/// Waits until the file contains geometry 2, which the process saves first.
bool WaitUntilItSaves(const fs::path& path, ChildProcess& saver) {
    while (TwoGeometries::HeldByFile(path) != 2) {
        if (!saver.IsRunning()) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

/// A random time from 0.1 ms to 300 ms, whose logarithm is distributed uniformly: a save takes less than 1 ms on one
/// machine and 100 ms on another.
std::chrono::microseconds SomeTime(std::mt19937_64& random) {
    constexpr double shortest = 100.0, longest = 300000.0; // microseconds
    const double share = std::uniform_real_distribution<double>(0.0, 1.0)(random);
    return std::chrono::microseconds(static_cast<long>(shortest * std::pow(longest / shortest, share)));
}

constexpr int killings = 12;

class InterruptedSave : public testing::Test {
protected:
    TemporaryFolder folder;
    fs::path path = folder.Path("head.ini");
    Bstr name{path};
};

TEST_F(InterruptedSave, LeavesOneWholeGeometryAfterAKill) {
    constexpr std::uint64_t seed = 20261120;
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    std::size_t others = 0;
    int found[] = {0, 0, 0};
    for (int round = 0; round < Rounds(killings); ++round) {
        SCOPED_TRACE(round);
        TwoGeometries::Put(path, 1);
        ChildProcess saver("saves in turn", path);
        ASSERT_TRUE(WaitUntilItSaves(path, saver));
        std::this_thread::sleep_for(SomeTime(random));
        saver.Kill();
        const int held = TwoGeometries::HeldByFile(path);
        ASSERT_NE(held, 0) << TwoGeometries::ContentOf(path);
        ++found[held];
        others += RemoveOthersIn(folder.Path());
    }
    std::cout << "killed " << Rounds(killings) << " times: " << found[1] << " first geometries, " << found[2]
              << " second ones, " << others << " copies left behind" << std::endl;
    EXPECT_LE(others, static_cast<std::size_t>(Rounds(killings))) << "each killed process may leave at most one copy";

    const int next = TwoGeometries::HeldByFile(path) == 1 ? 2 : 1;
    const auto calculator = TwoGeometries::Calculator(folder.Path(), next);
    EXPECT_EQ(calculator->SaveHeadGeometryToFile(name.Address()), S_OK);
    EXPECT_EQ(TwoGeometries::HeldByFile(path), next);
    EXPECT_EQ(OtherFilesIn(folder.Path()), 0U);
}

TEST_F(InterruptedSave, OfTwoProcessesNeverGivesAMixture) {
    TwoGeometries::Put(path, 1);
    ChildProcess one("saves geometry 1 first", path);
    ChildProcess other("saves geometry 2 first", path);
    const auto loader = CreateCalculator();
    int loaded[] = {0, 0, 0};
    while (one.IsRunning() || other.IsRunning()) {
        ASSERT_EQ(loader->LoadHeadGeometryFromFile(name.Address()), S_OK);
        const int held = TwoGeometries::HeldBy(*loader.Get());
        ASSERT_NE(held, 0) << "a mixture of both geometries";
        ++loaded[held];
        std::this_thread::sleep_for(std::chrono::milliseconds(2)); // programs do not load all the time
    }
    EXPECT_EQ(one.Wait(), 0) << "each save must succeed or be refused with its code, and some must succeed";
    EXPECT_EQ(other.Wait(), 0);
    EXPECT_NE(TwoGeometries::HeldByFile(path), 0) << TwoGeometries::ContentOf(path);
    EXPECT_EQ(OtherFilesIn(folder.Path()), 0U);
    std::cout << "loaded " << loaded[1] << " first and " << loaded[2] << " second geometries during "
              << 2 * Rounds(savesOfAnother) << " saves of two processes" << std::endl;
}

} // namespace
