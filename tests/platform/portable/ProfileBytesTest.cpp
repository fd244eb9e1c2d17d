#include "tests/platform/ProfileOnDisk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>

/// A write changes the bytes of its entry and no others, with two exceptions: it removes a UTF-8 mark, and it gives the
/// last line a line end if new lines follow.

namespace {

using namespace std::string_literals;

TEST(ProfileBytes, OutsideTheWrittenEntryDoNotChange) {
    const ProfileEdit edits[] = {
        {"[S]\n  k\t= 1 \n", L"S", L"k", "9", "[S]\n  k\t= 9 \n", "indentation and blanks"},
        {"\n; c\n\n[S]\n\nk=1\n\n\n[T]\n", L"S", L"k", "9", "\n; c\n\n[S]\n\nk=9\n\n\n[T]\n", "blank lines, comments"},
        {"[S]\nk=1\r\nm=2\rn=3", L"S", L"m", "9", "[S]\nk=1\r\nm=9\rn=3", "the line ends of all lines"},
        {"[S]\nk=1 ; c\n", L"S", L"k", "9", "[S]\nk=9\n", "a comment behind a value belongs to the value"},
        {"[S]\nk=\"1\"\n", L"S", L"k", "9", "[S]\nk=9\n", "quotes belong to the value"},
        {"[S]\nk=1\0x\n"s, L"S", L"k", "9", "[S]\nk=9\0x\n"s, "a zero byte does not belong to the value"},
        {"[S]\nk=\n", L"S", L"k", "9", "[S]\nk=9\n", "an empty value"},
        {"[S]\nk =  \n", L"S", L"k", "9", "[S]\nk =  9\n", "a value of blanks"},
        {"[S]\nk ", L"S", L"k", "9", "[S]\nk=9 ", "a key without a value"},
        {"[S]\nk=1\n\n\n[T]\n", L"S", L"m", "9", "[S]\nk=1\nm=9\n\n\n[T]\n", "a new key before trailing blank lines"},
        {"[S]\n\n\n", L"S", L"m", "9", "[S]\nm=9\n\n\n", "a new key before blank lines in an empty section"},
        {"[S]", L"S", L"m", "9", "[S]\r\nm=9\r\n", "in a text without line ends, the new ones are CR LF"},
        {"[S]\nk=1", L"T", L"m", "9", "[S]\nk=1\n[T]\nm=9\n", "new lines have the line end of the file"},
        {"[S]\rk=1\r", L"T", L"m", "9", "[S]\rk=1\r[T]\rm=9\r", "new lines have the line end of the file, CR"},
        {"[S]\nk=1\n\r\nm=1\r\n", L"S", L"n", "9", "[S]\nk=1\n\r\nm=1\r\nn=9\r\n",
         "new lines have the most frequent line end; CR LF if equal"},
        {"[S]\nk=1\nm=1\r\n", L"S", L"n", "9", "[S]\nk=1\nm=1\r\nn=9\n", "new lines have the most frequent line end"},
        {"[S]\r\n", L"", L"n", "9", "n=9\r\n[S]\r\n", "a key before any section"},
        {"\n[S]\n", L"", L"n", "9", "n=9\n\n[S]\n", "a key before any section, before blank lines"},
        {"[S]\nk=\xE4\n", L"S", L"m", "9", "[S]\nk=\xE4\nm=9\n", "bytes of no known encoding"},
        {"\xEF\xBB\xBF[S]\nk=\xC3\xA4\n", L"S", L"k", "9", "[S]\nk=9\n", "the UTF-8 mark is removed"},
        {"\xEF\xBB\xBF", L"S", L"k", "9", "[S]\r\nk=9\r\n", "the UTF-8 mark is removed from an empty file"},
    };
    ExpectEdits(edits);
}

/// The bytes of a UTF-16 text, with its mark.
std::string Utf16(const std::u16string& text, bool isSwapped) {
    std::string bytes = isSwapped ? "\xFE\xFF" : "\xFF\xFE";
    for (const char16_t unit : text) {
        const auto low = static_cast<char>(unit & 0xFF), high = static_cast<char>(unit >> 8);
        bytes += isSwapped ? high : low;
        bytes += isSwapped ? low : high;
    }
    return bytes;
}

TEST(ProfileBytes, StayUtf16InAUtf16File) {
    for (const bool isSwapped : {false, true}) {
        const ProfileOnDisk profile;
        // An umlaut, a character of two units, and lone surrogates.
        profile.Put(Utf16(u"[S]\nk=\u00E4\U0001F600\n\xD83D=\xDE00\xD83D\n", isSwapped) + "?");
        EXPECT_EQ(profile.Read(L"S", L"k"), "\xC3\xA4\xF0\x9F\x98\x80");
        EXPECT_TRUE(profile.Write(L"S", L"m", "\xC3\xB6\xF0\x9F\x98\x81"));
        EXPECT_EQ(profile.Content(),
                  Utf16(u"[S]\nk=\u00E4\U0001F600\n\xD83D=\xDE00\xD83D\nm=\u00F6\U0001F601\n", isSwapped) + "?");
        EXPECT_EQ(profile.Read(L"S", L"m"), "\xC3\xB6\xF0\x9F\x98\x81");
        EXPECT_TRUE(profile.Write(L"\u00E4", L"\U0001F600", "1"));
        EXPECT_EQ(profile.Read(L"\u00E4", L"\U0001F600"), "1");
    }
}

TEST(ProfileBytes, ThatAreNoTextBecomeReplacementCharacters) {
    const ProfileOnDisk profile;
    profile.Put(Utf16(u"[S]\n", false));
    for (const char* const broken : {"\x80", "\xC3", "\xC0\xAF", "\xE4\xB8", "\xF5\x80\x80\x80", "\xED\xA0"}) {
        EXPECT_TRUE(profile.Write(L"S", L"k", broken));
        EXPECT_EQ(profile.Read(L"S", L"k").substr(0, 3), "\xEF\xBF\xBD") << testing::PrintToString(broken);
    }
}

TEST(ProfileBytes, AreRestoredByWritingAValueBack) {
    constexpr std::uint64_t seed = 86028121;
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    const std::string pieces[] = {
        "[S]", "[S]\n", "[s]\r\n", "[T]\n", "[",  "]", "k", "k=", " K = 1 \n", "m=2\n", "=",  "\n",
        "\n",  "\r\n",  "\r",      " ",     "\t", ";", "1", "22", "\0"s,       "\xE4",  "x y"};
    const ProfileOnDisk profile;
    int found = 0;
    for (int i = 0; i < 300; ++i) {
        std::string content;
        for (std::uint64_t length = random() % 60; length > 0; --length)
            content += pieces[random() % std::size(pieces)];
        profile.Put(content);
        const std::string stored = profile.Read(L"S", L"k", "(none)");
        if (stored == "(none)") continue;
        ++found;
        ASSERT_TRUE(profile.Write(L"S", L"k", "longer than before"));
        ASSERT_EQ(profile.Read(L"S", L"k"), "longer than before") << testing::PrintToString(content);
        ASSERT_TRUE(profile.Write(L"S", L"k", stored));
        ASSERT_EQ(profile.Content(), content);
    }
    EXPECT_GT(found, 30) << "too few of the random files have the key";
}

TEST(ProfileBytes, AreNotWrittenWhenNothingChanges) {
    const ProfileOnDisk profile;
    profile.Put("[S]\r\nk=1\r\n");
    const auto longAgo = std::filesystem::file_time_type::clock::now() - std::chrono::hours(1);
    std::filesystem::last_write_time(profile.Path(), longAgo);
    const auto written = std::filesystem::last_write_time(profile.Path());
    EXPECT_TRUE(profile.Write(L"S", L"k", "1"));
    EXPECT_EQ(std::filesystem::last_write_time(profile.Path()), written);
}

} // namespace
