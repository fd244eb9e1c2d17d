#include "platform/SettingsStore.h"
#include "tests/support/SettingsFixture.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

using namespace qmv40;

namespace {

using namespace std::string_literals;

struct Answer {
    LSTATUS status;
    DWORD type;
    DWORD length;
    std::string buffer; ///< the whole buffer, filled with '#' before the query
};

bool operator==(const Answer& left, const Answer& right) {
    return left.status == right.status && left.type == right.type && left.length == right.length &&
           left.buffer == right.buffer;
}

void PrintTo(const Answer& answer, std::ostream* stream) {
    *stream << "status " << answer.status << ", type " << answer.type << ", length " << answer.length << ", buffer "
            << testing::PrintToString(answer.buffer);
}

Answer Query(const SettingsKey& key, const char* name, std::size_t capacity) {
    std::string buffer(capacity, '#');
    DWORD type = 12345, length = 12345;
    const LSTATUS status = key.Query(name, std::span(buffer.data(), capacity), type, length);
    return {status, type, length, buffer};
}

const Answer nothing{ERROR_FILE_NOT_FOUND, REG_NONE, 0, "####"};

TEST(SettingsKey, IsNotOpenWhenItDoesNotExist) {
    const SettingsFixture settings;
    const SettingsKey key(SettingsFixture::key);
    EXPECT_FALSE(key.IsOpen());
    EXPECT_EQ(Query(key, "Name", 4), nothing);
}

TEST(SettingsKey, WithoutValuesIsOpen) {
    SettingsFixture settings;
    settings.CreateEmptyKey();
    const SettingsKey key(SettingsFixture::key);
    EXPECT_TRUE(key.IsOpen());
    EXPECT_EQ(Query(key, "Name", 4), nothing);
}

TEST(SettingsKey, IsFoundInAnyLetterCase) {
    SettingsFixture settings;
    settings.SetText("Locked To Unlocked Z Offset", "-2");
    const SettingsKey key(R"(SOFTWARE\hollbeck\vrx software\qmv40CALCULATOR)");
    EXPECT_TRUE(key.IsOpen());
    EXPECT_EQ(Query(key, "LOCKED TO unlocked z offset", 4), (Answer{ERROR_SUCCESS, REG_SZ, 3, "-2\0#"s}));
}

TEST(SettingsKey, IsNotConfusedWithItsParentsAndNeighbours) {
    SettingsFixture settings;
    settings.SetText("Name", "1");
    const SettingsKey parent(R"(Software\Hollbeck\VRX Software)");
    EXPECT_TRUE(parent.IsOpen()) << "the parents of a key exist";
    EXPECT_EQ(Query(parent, "Name", 4), nothing);
    EXPECT_FALSE(SettingsKey(R"(Software\Hollbeck\VRX Software\QMV40Calculator2)").IsOpen());
    EXPECT_FALSE(SettingsKey(R"(Software\Hollbeck\VRX Software\QMV40Calc)").IsOpen());
}

TEST(SettingsKey, ReturnsATextWithItsTerminator) {
    SettingsFixture settings;
    settings.SetText("Name", "hello");
    const SettingsKey key(SettingsFixture::key);
    EXPECT_EQ(Query(key, "Name", 8), (Answer{ERROR_SUCCESS, REG_SZ, 6, "hello\0##"s}));
    EXPECT_EQ(Query(key, "Name", 6), (Answer{ERROR_SUCCESS, REG_SZ, 6, "hello\0"s}));
}

TEST(SettingsKey, ReturnsTheLengthWhenTheBufferIsTooSmall) {
    SettingsFixture settings;
    settings.SetText("Name", "hello");
    const SettingsKey key(SettingsFixture::key);
    EXPECT_EQ(Query(key, "Name", 5), (Answer{ERROR_MORE_DATA, REG_SZ, 6, "#####"}));
    EXPECT_EQ(Query(key, "Name", 1), (Answer{ERROR_MORE_DATA, REG_SZ, 6, "#"}));
    EXPECT_EQ(Query(key, "Name", 0), (Answer{ERROR_MORE_DATA, REG_SZ, 6, ""}));
    DWORD type = 0, length = 0;
    EXPECT_EQ(key.Query("Name", {}, type, length), ERROR_MORE_DATA) << "an empty buffer is too small";
    EXPECT_EQ(length, 6U);
}

TEST(SettingsKey, ReturnsValuesOfEveryTypeUnchanged) {
    SettingsFixture settings;
    settings.SetRaw("number", REG_DWORD, {1, 2, 3, 4});
    settings.SetRaw("bytes", REG_BINARY, {0, 255, 0});
    settings.SetRaw("expandable", REG_EXPAND_SZ, {'%', 'A', '%', 0});
    settings.SetRaw("no bytes", REG_BINARY, {});
    settings.SetRaw("no text", REG_SZ, {});
    settings.SetRaw("two texts", REG_SZ, {'a', 0, 'b', 0});
    const SettingsKey key(SettingsFixture::key);
    EXPECT_EQ(Query(key, "number", 6), (Answer{ERROR_SUCCESS, REG_DWORD, 4, "\1\2\3\4##"s}));
    EXPECT_EQ(Query(key, "number", 3), (Answer{ERROR_MORE_DATA, REG_DWORD, 4, "###"}));
    EXPECT_EQ(Query(key, "bytes", 4), (Answer{ERROR_SUCCESS, REG_BINARY, 3, "\0\xFF\0#"s}));
    EXPECT_EQ(Query(key, "expandable", 6), (Answer{ERROR_SUCCESS, REG_EXPAND_SZ, 4, "%A%\0##"s})) << "not expanded";
    EXPECT_EQ(Query(key, "no bytes", 2), (Answer{ERROR_SUCCESS, REG_BINARY, 0, "##"}));
    EXPECT_EQ(Query(key, "no text", 2), (Answer{ERROR_SUCCESS, REG_SZ, 0, "##"}));
    EXPECT_EQ(Query(key, "two texts", 5), (Answer{ERROR_SUCCESS, REG_SZ, 4, "a\0b\0#"s}));
}

TEST(SettingsKey, MayAddAMissingTerminator) {
    SettingsFixture settings;
    settings.SetRaw("Name", REG_SZ, {'h', 'i'});
    const Answer answer = Query(SettingsKey(SettingsFixture::key), "Name", 3);
    EXPECT_EQ(answer.status, ERROR_SUCCESS);
    EXPECT_TRUE(answer.length == 2 || answer.length == 3) << answer.length;
    EXPECT_EQ(answer.buffer.substr(0, answer.length), "hi\0"s.substr(0, answer.length));
}

TEST(SettingsKey, HasADefaultValueWithoutAName) {
    SettingsFixture settings;
    settings.SetText("Name", "1");
    EXPECT_EQ(Query(SettingsKey(SettingsFixture::key), "", 4), nothing);
    settings.SetText("", "d");
    EXPECT_EQ(Query(SettingsKey(SettingsFixture::key), "", 4), (Answer{ERROR_SUCCESS, REG_SZ, 2, "d\0##"s}));
}

TEST(SettingsKey, ReturnsTextsOfAnyCharacters) {
    SettingsFixture settings;
    for (const char* const text : {"", " ", "\"", "\\", "\\\"", "a\\nb", "; c", "=", "[HKEY]", "C:\\x\\", "0,5"}) {
        settings.SetText("a \"strange\\name=", text);
        const std::string stored = text + "\0"s;
        EXPECT_EQ(Query(SettingsKey(SettingsFixture::key), "a \"strange\\name=", stored.size()),
                  (Answer{ERROR_SUCCESS, REG_SZ, static_cast<DWORD>(stored.size()), stored}));
    }
}

TEST(SettingsKey, CanHaveManyValues) {
    SettingsFixture settings;
    for (int i = 0; i < 50; ++i)
        settings.SetText(("Value " + std::to_string(i)).c_str(), std::to_string(i * 7).c_str());
    const SettingsKey key(SettingsFixture::key);
    for (int i = 0; i < 50; ++i) {
        const std::string stored = std::to_string(i * 7) + "\0"s;
        const Answer answer = Query(key, ("Value " + std::to_string(i)).c_str(), 20);
        EXPECT_EQ(answer.buffer.substr(0, answer.length), stored);
    }
}

TEST(SettingsKey, IsReadAgainEachTimeItIsOpened) {
    SettingsFixture settings;
    for (const char* const text : {"1", "2"}) {
        settings.SetText("Name", text);
        EXPECT_EQ(Query(SettingsKey(SettingsFixture::key), "Name", 2),
                  (Answer{ERROR_SUCCESS, REG_SZ, 2, text + "\0"s}));
    }
    settings.RemoveKey();
    EXPECT_FALSE(SettingsKey(SettingsFixture::key).IsOpen());
}

TEST(SettingsFixture, LeavesNothingBehind) {
    {
        SettingsFixture settings;
        settings.SetText("Name", "1");
    }
    const SettingsFixture next;
    EXPECT_FALSE(SettingsKey(SettingsFixture::key).IsOpen());
}

} // namespace
