#include "tests/platform/ProfileOnDisk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>

using namespace qmv40;

namespace {

using namespace std::string_literals;

TEST(ProfileReading, FollowsTheRulesOfThePlatform) {
    const struct {
        std::string content;
        const wchar_t* section;
        const wchar_t* key;
        std::string value;
        const char* why;
    } cases[] = {
        {"[HEADCENTRE]\r\nX=1\r\nY=2\r\n", L"HEADCENTRE", L"Y", "2", "plain"},
        {"[headcentre]\r\nx=1\r\n", L"HEADCENTRE", L"X", "1", "letter case of the file does not matter"},
        {"[S]\r\nk=1\r\n", L" S\t", L"\tk ", "1", "blanks around the names asked for do not matter"},
        {"  [\tS\t]\n\tk\t=\ta b\t\n", L"S", L"k", "a b", "blanks around everything are dropped"},
        {"[S]\nk=\v\fa\v\f\n", L"S", L"k", "a", "every kind of blank"},
        {"[S]\r\nk=\"q\"\r\n", L"S", L"k", "q", "one pair of double quotes is dropped"},
        {"[S]\r\nk='q'\r\n", L"S", L"k", "q", "one pair of single quotes is dropped"},
        {"[S]\r\nk=\" in \"  \r\n", L"S", L"k", " in ", "blanks inside the quotes stay"},
        {"[S]\r\nk=\"'a'\"\r\n", L"S", L"k", "'a'", "only the outer pair is dropped"},
        {"[S]\r\nk=\"\"\"\r\n", L"S", L"k", "\"", "only one pair is dropped"},
        {"[S]\r\nk=\"\r\n", L"S", L"k", "\"", "one quote is no pair"},
        {"[S]\r\nk='a\"\r\n", L"S", L"k", "'a\"", "two different quotes are no pair"},
        {"[S]\r\nk=a\"b\"\r\n", L"S", L"k", "a\"b\"", "quotes inside stay"},
        {"[S]\r\nk=\r\n", L"S", L"k", "", "an empty value is a value"},
        {"[S]\r\nk=   \r\n", L"S", L"k", "", "blanks are an empty value"},
        {"[S]\r\nk=\"\"\r\n", L"S", L"k", "", "two quotes are an empty value"},
        {"[S]\r\nk\r\n", L"S", L"k", "default", "without an equals sign there is no value"},
        {"[S]\r\nk\r\nk=5\r\n", L"S", L"k", "default", "the first line of a key counts, also without a value"},
        {"[S]\r\nk=1\r\nk=2\r\n", L"S", L"k", "1", "first of two keys"},
        {"[S]\r\nk=1\r\n[s]\r\nk=2\r\nm=3\r\n", L"S", L"k", "1", "first of two sections"},
        {"[S]\r\nk=1\r\n[s]\r\nm=3\r\n", L"S", L"m", "default", "the second one is not searched"},
        {"[S]\r\nk=1 ; c\r\n", L"S", L"k", "1 ; c", "there are no comments behind a value"},
        {"[S]\r\n;k=1\r\nk=2\r\n", L"S", L"k", "2", "a comment line hides its key"},
        {"[S]\r\n;k=1\r\n", L"S", L";k", "1", "the name of its key begins with the semicolon"},
        {"[S]\r\n#k=1\r\n", L"S", L"#k", "1", "a hash begins a key like any other"},
        {"[S]\r\n;[T]\r\nk=1\r\n", L"S", L"k", "1", "a section line in a comment is none"},
        {"[S]\r\nk=a=b\r\n", L"S", L"k", "a=b", "the first equals sign divides"},
        {"[S]\r\n\"k\"=a\r\n", L"S", L"k", "default", "quotes belong to a key"},
        {"[S]\r\n\r\n  \r\n=v\r\n", L"S", L"", "v", "a key may have no name; blank lines are no such keys"},
        {"[junk] x\r\nk=1\r\n", L"junk", L"k", "1", "anything may follow a section's name"},
        {"[S] k=1\r\n", L"S", L"k", "default", "what follows a section's name is ignored"},
        {"[S]=4\r\nk=1\r\n", L"S", L"k", "1", "an equals sign makes no key of a section line"},
        {"[a [x]]\r\nk=1\r\n", L"a [x]", L"k", "1", "the last bracket ends the name"},
        {"[a] [b]\r\nk=1\r\n", L"a] [b", L"k", "1", "other brackets belong to the name"},
        {"[S]\r\n[u=5\r\nk=1\r\n", L"S", L"[u", "5", "a section line must be closed"},
        {"[S]\r\n[u\r\nk=1\r\n", L"S", L"k", "1", "an open section line is a plain line"},
        {"[S]\r\nk[1]=1\r\n", L"S", L"k[1]", "1", "a section line begins with its bracket"},
        {"a=1\r\n[S]\r\nb=2\r\n", L"", L"a", "1", "what stands before any section belongs to section \"\""},
        {"a=1\r\n[S]\r\nb=2\r\n", L" ", L"a", "1", "a name of blanks is the empty name"},
        {"a=1\r\n[S]\r\nb=2\r\n", L"", L"b", "default", "a later section's keys do not belong to section \"\""},
        {"a=1\r\n[]\r\nb=2\r\n", L"", L"b", "default", "a section line without a name is not section \"\""},
        {"[S]\nk=1\nm=2\n", L"S", L"m", "2", "lines may end in LF"},
        {"[S]\rk=1\rm=2\r", L"S", L"m", "2", "in CR"},
        {"[S]\n\rk=1\n\rm=2\n\r", L"S", L"m", "2", "lines may end in LF CR"},
        {"[S]\r\nk=1\nm=2", L"S", L"m", "2", "line ends may differ, and the last line may have none"},
        {"[S]\nk=a\x1A\n", L"S", L"k", "a", "the old end-of-file mark is a blank"},
        {"[S]\nk=a\x1A"
         "b\nm=3\n",
         L"S", L"m", "3", "the old end-of-file mark does not end the file"},
        {"[S]\nk= a \0 b\nm=2\n"s, L"S", L"k", "a ", "a zero byte ends the value"},
        {"[S]\nk= a \0 b\nm=2\n"s, L"S", L"m", "2", "a zero byte does not end the file"},
        {"[S]\nk=\"b\"\0x\n"s, L"S", L"k", "b", "a pair of quotes before a zero byte is dropped"},
        {"[S]\nk\0=b\n"s, L"S", L"k", "b", "a zero byte ends a key's name"},
        {"[S\0]\nk=b\n"s, L"S", L"k", "b", "a zero byte ends a section's name"},
        {"\xEF\xBB\xBF[S]\r\nk=8\r\n", L"S", L"k", "8", "UTF-8 mark"},
        {"\xFF\xFE[\0S\0]\0\n\0k\0=\0"s
         "7\0\n\0"s,
         L"S", L"k", "7", "UTF-16"},
        {"\xFE\xFF\0[\0S\0]\0\n\0k\0=\0"s
         "6\0\n"s,
         L"S", L"k", "6", "UTF-16, big-endian"},
        {"[S]\r\nk=\xE4\xF6\r\n", L"S", L"k", "\xE4\xF6", "without a mark bytes are taken as they are"},
        {"[S]\r\n" + std::string(5000, 'x') + "=1\r\nk=2\r\n", L"S", L"k", "2", "lines may be long"},
        {"", L"S", L"k", "default", "empty file"},
        {"[S]\r\n", L"S", L"k", "default", "no such key"},
        {"[T]\r\nk=1\r\n", L"S", L"k", "default", "no such section"},
        {"[SS]\r\nk=1\r\n[S]\r\nkk=1\r\n", L"S", L"k", "default", "a longer name is another one"},
    };
    const ProfileOnDisk profile;
    for (const auto& [content, section, key, value, why] : cases) {
        profile.Put(content);
        EXPECT_EQ(profile.Read(section, key), value) << why;
    }
}

TEST(ProfileReading, ReturnsTheDefaultWithoutAFile) {
    const ProfileOnDisk profile;
    EXPECT_EQ(profile.Read(L"S", L"k"), "default");
    EXPECT_FALSE(profile.Exists()) << "reading must not create the file";
    std::array<char, 20> buffer{};
    ReadProfileText(L"S", L"k", "default", buffer, (profile.Folder() / "none" / "head.ini").wstring().c_str());
    EXPECT_STREQ(buffer.data(), "default");
    ReadProfileText(L"S", L"k", "default", buffer, profile.Folder().wstring().c_str());
    EXPECT_STREQ(buffer.data(), "default") << "the name of a folder";
}

TEST(ProfileReading, RemovesBlanksAndQuotesFromTheDefault) {
    const struct {
        const char* defaultText;
        const char* value;
        const char* why;
    } cases[] = {
        {"999999999.0000000", "999999999.0000000", "as it is"},
        {" x  ", " x", "blanks at its end are dropped, at its beginning not"},
        {"x\t", "x\t", "a tab is kept"},
        {"\"dq\"", "dq", "a pair of quotes is dropped"},
        {"' x '", " x ", "blanks within the quotes stay"},
        {"'x' ", "x", "blanks are dropped first"},
        {" 'x'", " 'x'", "a blank before the quote keeps the quotes"},
        {"\"", "\"", "one quote is no pair"},
        {"", "", "empty"},
        {nullptr, "", "null counts as empty"},
    };
    const ProfileOnDisk profile;
    for (const auto& [defaultText, value, why] : cases) EXPECT_EQ(profile.Read(L"S", L"k", defaultText), value) << why;
}

TEST(ProfileReading, CutsTheValueToTheBuffer) {
    const ProfileOnDisk profile;
    profile.Put("[S]\r\nk=12345\r\n");
    EXPECT_EQ(profile.Read(L"S", L"k", "", 7), "12345");
    EXPECT_EQ(profile.Read(L"S", L"k", "", 6), "12345");
    EXPECT_EQ(profile.Read(L"S", L"k", "", 5), "1234");
    EXPECT_EQ(profile.Read(L"S", L"k", "", 2), "1");
    EXPECT_EQ(profile.Read(L"S", L"k", "", 1), "");
    EXPECT_EQ(profile.Read(L"S", L"none", "default", 4), "def");
}

TEST(ProfileReading, WritesNothingOutsideTheBuffer) {
    const ProfileOnDisk profile;
    profile.Put("[S]\r\nk=12345\r\n");
    std::array<char, 8> memory;
    memory.fill('#');
    const std::wstring path = profile.Path().wstring();
    ReadProfileText(L"S", L"k", "", std::span(memory).subspan(2, 0), path.c_str());
    EXPECT_TRUE(std::ranges::all_of(memory, [](char c) { return c == '#'; }));
    ReadProfileText(L"S", L"k", "", std::span(memory).subspan(2, 3), path.c_str());
    EXPECT_EQ(std::string(memory.data(), memory.size()), "##12\0###"s);
}

TEST(ProfileReading, ReturnsLongValuesWhole) {
    const ProfileOnDisk profile;
    const std::string longValue(70000, '7');
    profile.Put("[S]\r\nk=" + longValue + "\r\n");
    EXPECT_EQ(profile.Read(L"S", L"k", "", 80000), longValue);
    EXPECT_EQ(profile.Read(L"S", L"k", "", 349), longValue.substr(0, 348));
}

TEST(ProfileReading, ReadsTheLatestContent) {
    const ProfileOnDisk profile;
    for (const char* const value : {"1", "22", "3"}) {
        profile.Put("[S]\r\nk="s + value + "\r\n");
        EXPECT_EQ(profile.Read(L"S", L"k"), value);
    }
    std::filesystem::remove(profile.Path());
    EXPECT_EQ(profile.Read(L"S", L"k"), "default");
}

} // namespace
