#include "settings/FixedHeadOffsets.h"
#include "tests/support/Rounds.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>

using namespace qmv40;

/// The settings file is replaced while it is read.

namespace {

/// Three values that belong together and, if `isLong`, so much other text that writing takes some time.
std::string SettingsText(const std::string& value, bool isLong) {
    std::string text = "REGEDIT4\n\n[HKEY_LOCAL_MACHINE\\Software\\Hollbeck\\VRX Software\\QMV40Calculator]\n";
    const auto add = [&](const char* name) {
        text += "\"Head Centre To Drive Cup " + std::string(name) + " Offset\"=\"" + value + "\"\n";
    };
    add("X");
    if (isLong) text += "; " + std::string(100000, '-') + "\n";
    add("Y");
    add("Z");
    return text;
}

class ReplacedSettings : public testing::Test {
protected:
    ReplacedSettings() {
        if (const char* const before = std::getenv(variable)) chosenBefore = before;
        ::setenv(variable, file.c_str(), 1);
    }
    ~ReplacedSettings() override {
        chosenBefore.empty() ? ::unsetenv(variable) : ::setenv(variable, chosenBefore.c_str(), 1);
    }

    void PutInPlace(const std::string& text) const { std::ofstream(file, std::ios::binary) << text; }
    void PutByRenaming(const std::string& text) const {
        const auto beside = folder.Path("settings.new");
        std::ofstream(beside, std::ios::binary) << text;
        std::filesystem::rename(beside, file);
    }

    static constexpr const char* variable = "QMV40_SETTINGS";
    TemporaryFolder folder;
    std::filesystem::path file = folder.Path("settings.reg");
    std::string chosenBefore;
};

/// How many reads gave which values.
struct Reads {
    long first = 0;    ///< all three 1.5
    long second = 0;   ///< all three 2.5
    long defaults = 0; ///< the built-in ones
    long mixed = 0;    ///< any others
};

/// Reads while a second thread calls `write`, with 2.5 and 1.5 in turn.
template <typename Write> Reads ReadWhile(int writes, Write write) {
    std::atomic<bool> isDone{false};
    std::thread writer([&] {
        for (int i = 0; i < writes; ++i) write(i % 2 == 0 ? "2.5" : "1.5");
        isDone = true;
    });
    Reads reads;
    while (!isDone) {
        const FixedOffset offset = ReadFixedOffset(HeadOffset::HeadCentreToDriveCup);
        const auto isAll = [&](double x, double y, double z) {
            return offset.x == x && offset.y == y && offset.z == z;
        };
        if (isAll(1.5, 1.5, 1.5))
            ++reads.first;
        else if (isAll(2.5, 2.5, 2.5))
            ++reads.second;
        else if (isAll(-6.95, 24.0, -11.5))
            ++reads.defaults;
        else
            ++reads.mixed;
    }
    writer.join();
    return reads;
}

TEST_F(ReplacedSettings, AreTheOldOrTheNewOnesAfterARename) {
    PutInPlace(SettingsText("1.5", true));
    const Reads reads = ReadWhile(Rounds(300), [&](const char* value) { PutByRenaming(SettingsText(value, true)); });
    std::cout << reads.first << " reads gave 1.5, " << reads.second << " gave 2.5" << std::endl;
    EXPECT_GT(reads.first, 0);
    EXPECT_GT(reads.second, 0);
    EXPECT_EQ(reads.defaults, 0);
    EXPECT_EQ(reads.mixed, 0);
}

// A partly written file cannot be distinguished from a short one: while it does not name the key, the built-in values
// are used. But values of two writes are never mixed.
TEST_F(ReplacedSettings, AreOldNewOrBuiltInDuringAWrite) {
    PutInPlace(SettingsText("1.5", false));
    const Reads reads = ReadWhile(2000, [&](const char* value) { PutInPlace(SettingsText(value, false)); });
    std::cout << reads.first << " reads gave 1.5, " << reads.second << " gave 2.5, " << reads.defaults
              << " the defaults" << std::endl;
    EXPECT_GT(reads.first + reads.second, 0);
    EXPECT_EQ(reads.mixed, 0);
}

} // namespace
