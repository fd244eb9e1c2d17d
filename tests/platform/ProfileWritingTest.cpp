#include "tests/platform/ProfileOnDisk.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <utility>

using namespace qmv40;

/// Rules that hold on all platforms. (Which other bytes a write changes differs between the platforms.)

namespace {

TEST(ProfileWriting, CreatesFileSectionAndKey) {
    const ProfileOnDisk profile;
    EXPECT_TRUE(profile.Write(L"HEADCENTRE", L"X", "1.000000000e+00"));
    EXPECT_TRUE(profile.Write(L"HEADCENTRE", L"Y", "2.000000000e+00"));
    EXPECT_TRUE(profile.Write(L"SAFEPOSITION", L"X", "3.000000000e+00"));
    EXPECT_EQ(profile.Content(), "[HEADCENTRE]\r\nX=1.000000000e+00\r\nY=2.000000000e+00\r\n"
                                 "[SAFEPOSITION]\r\nX=3.000000000e+00\r\n");
}

TEST(ProfileWriting, ChangesTheFileByTheRules) {
    const ProfileEdit edits[] = {
        {"[S]\r\nk=1\r\nm=2\r\n", L"S", L"k", "9", "[S]\r\nk=9\r\nm=2\r\n", "the value is replaced in its line"},
        {"[s]\r\nK=1\r\n", L"S", L"k", "9", "[s]\r\nK=9\r\n", "the stored letter case stays"},
        {"[S]\r\nk=1\r\n[T]\r\n", L"S", L"m", "9", "[S]\r\nk=1\r\nm=9\r\n[T]\r\n", "a new key at the section's end"},
        {"[S]\r\n; c\r\n[T]\r\n", L"S", L"m", "9", "[S]\r\n; c\r\nm=9\r\n[T]\r\n",
         "a new key behind the section's comments"},
        {"[S]\r\nk=1", L"S", L"m", "9", "[S]\r\nk=1\r\nm=9\r\n", "the last line gets a line end"},
        {"[S]\r\nk=1", L"T", L"m", "9", "[S]\r\nk=1\r\n[T]\r\nm=9\r\n", "a new section at the file's end"},
        {"[S]\r\nk=1\r\nk=2\r\n", L"S", L"k", "9", "[S]\r\nk=9\r\nk=2\r\n", "the first of two keys"},
        {"[S]\r\nk=1\r\n[T]\r\n[S]\r\nm=2\r\n", L"S", L"m", "9", "[S]\r\nk=1\r\nm=9\r\n[T]\r\n[S]\r\nm=2\r\n",
         "the first of two sections"},
        {"[S]\r\nk\r\nm=1\r\n", L"S", L"k", "9", "[S]\r\nk=9\r\nm=1\r\n", "a key without a value gets one"},
        {"[S]\r\n;k=1\r\n", L"S", L";k", "9", "[S]\r\n;k=9\r\n", "a line with a semicolon is an entry"},
        {"[S]\r\n", L"S", L"", "9", "[S]\r\n=9\r\n", "a key without a name"},
        {"a=1\r\n[S]\r\nk=1\r\n", L"", L"m", "9", "a=1\r\nm=9\r\n[S]\r\nk=1\r\n", "before any section"},
        {"[S]\r\nk=1\r\n", L"S", L"k", "", "[S]\r\nk=\r\n", "an empty value"},
        {"[S]\r\nk=1\r\n", L"S", L"k", "\"a\"", "[S]\r\nk=\"a\"\r\n", "quotes are written"},
        {"[S]\r\nk=1\r\n", L"S", L"k", "\t a", "[S]\r\nk=a\r\n", "leading blanks are not written"},
    };
    ExpectEdits(edits);
}

TEST(ProfileWriting, InAnyOrderIsReadBack) {
    const wchar_t* const sections[] = {L"HEADCENTRE", L"SAFEPOSITION", L"AlignmentOffset", L"", L"a [x]"};
    const wchar_t* const keys[] = {L"X", L"Y", L"RequiredRotationAroundZ", L"two words", L";not a comment"};
    const char* const values[] = {"1.000000000e+00", "-6.950000000e+00", "", "a=b", "two  words", "[S]", "; c", "'"};
    constexpr std::uint64_t seed = 4711;
    SCOPED_TRACE(seed);
    std::mt19937_64 random(seed);
    const ProfileOnDisk profile;
    profile.Put("; a comment\nother=1\n[Other]\nkey=2");
    std::map<std::pair<std::wstring, std::wstring>, std::string> expected;
    const auto anyOf = [&](const auto& list) { return list[random() % std::size(list)]; };
    for (int step = 0; step < 120; ++step) {
        const wchar_t *const section = anyOf(sections), *const key = anyOf(keys);
        const char* const value = anyOf(values);
        ASSERT_TRUE(profile.Write(section, key, value));
        expected[{section, key}] = value;
        ASSERT_EQ(profile.Read(section, key), value) << "step " << step;
        if (step % 5 != 4) continue; // all entries, now and then: a read takes a millisecond on some platforms
        for (const wchar_t* const s : sections)
            for (const wchar_t* const k : keys) {
                const auto found = expected.find({s, k});
                ASSERT_EQ(profile.Read(s, k), found == expected.end() ? "default" : found->second) << "step " << step;
            }
    }
    EXPECT_EQ(profile.Read(L"", L"other"), "1");
    EXPECT_EQ(profile.Read(L"Other", L"key"), "2");
    EXPECT_NE(profile.Content().find("; a comment"), std::string::npos);
}

TEST(ProfileWriting, FailsInAFolderThatDoesNotExist) {
    const ProfileOnDisk profile;
    const std::wstring path = (profile.Folder() / "none" / "head.ini").wstring();
    EXPECT_FALSE(WriteProfileText(L"S", L"k", "1", path.c_str()));
    EXPECT_FALSE(std::filesystem::exists(profile.Folder() / "none"));
}

TEST(ProfileWriting, FailsForTheNameOfAFolder) {
    const ProfileOnDisk profile;
    std::filesystem::create_directory(profile.Path());
    EXPECT_FALSE(profile.Write(L"S", L"k", "1"));
    EXPECT_TRUE(std::filesystem::is_directory(profile.Path()));
}

TEST(ProfileWriting, FailsWithoutASectionAKeyOrAFileName) {
    const ProfileOnDisk profile;
    profile.Put("[S]\r\nk=1\r\n");
    EXPECT_FALSE(profile.Write(nullptr, L"k", "2"));
    EXPECT_FALSE(profile.Write(L"S", nullptr, "2")) << "a null key would remove the section";
    EXPECT_FALSE(profile.Write(nullptr, nullptr, "2"));
    EXPECT_FALSE(WriteProfileText(L"S", L"k", "2", L""));
    EXPECT_FALSE(WriteProfileText(L"S", L"k", "2", nullptr));
    EXPECT_EQ(profile.Content(), "[S]\r\nk=1\r\n");
}

} // namespace
