#include "tests/platform/ProfileOnDisk.h"

#include <gtest/gtest.h>

#include <iterator>
#include <optional>
#include <string>

using namespace qmv40;

/// Several writes, or several reads, of one file in one step.

namespace {

constexpr const char* before = "[S]\r\na=1\r\nb=2\r\n[T]\r\nc=3\r\n";

class ProfileTogether : public testing::Test {
protected:
    ProfileTogether() { profile.Put(before); }

    ProfileOnDisk profile;
    std::wstring path = profile.Path().wstring();
};

TEST_F(ProfileTogether, EntriesAreWrittenAtTheCommitInTheirOrder) {
    ProfileWriter writer(path.c_str());
    writer.Set(L"S", L"a", "10");
    writer.Set(L"S", L"new", "11");
    writer.Set(L"S", L"a", "12");
    writer.Set(L"U", L"d", "13");
    EXPECT_EQ(profile.Content(), before);
    EXPECT_TRUE(writer.Commit());
    EXPECT_EQ(profile.Content(), "[S]\r\na=12\r\nb=2\r\nnew=11\r\n[T]\r\nc=3\r\n[U]\r\nd=13\r\n");
    EXPECT_EQ(profile.FilesInFolder(), 1) << "no other file may be left";
}

TEST_F(ProfileTogether, TheCommitCreatesAMissingFile) {
    std::filesystem::remove(path);
    ProfileWriter writer(path.c_str());
    writer.Set(L"S", L"a", "1");
    writer.Set(L"T", L"b", "2");
    EXPECT_FALSE(profile.Exists());
    EXPECT_TRUE(writer.Commit());
    EXPECT_EQ(profile.Content(), "[S]\r\na=1\r\n[T]\r\nb=2\r\n");
    EXPECT_EQ(profile.FilesInFolder(), 1);
}

TEST_F(ProfileTogether, NothingIsWrittenWithoutACommit) {
    ProfileWriter(path.c_str()).Set(L"S", L"a", "10");
    EXPECT_EQ(profile.Content(), before);
    EXPECT_EQ(profile.FilesInFolder(), 1);
}

TEST_F(ProfileTogether, WritingEndsAtTheFirstEntryWithoutAName) {
    ProfileWriter writer(path.c_str());
    writer.Set(L"S", L"a", "10");
    writer.Set(L"S", nullptr, "11");
    writer.Set(L"T", L"c", "12");
    EXPECT_FALSE(writer.Commit());
    EXPECT_EQ(profile.Content(), "[S]\r\na=10\r\nb=2\r\n[T]\r\nc=3\r\n") << "the entries before it must stay";
    EXPECT_EQ(profile.FilesInFolder(), 1);
}

// With a null name, the platform's own functions would list names or read another file.
TEST_F(ProfileTogether, NothingIsReadWithoutASectionAKeyOrAFileName) {
    EXPECT_EQ(profile.Read(nullptr, L"a"), "default");
    EXPECT_EQ(profile.Read(L"S", nullptr), "default");
    EXPECT_EQ(profile.Read(nullptr, nullptr, nullptr), "");
    for (const wchar_t* const name : {static_cast<const wchar_t*>(nullptr), L""}) {
        char buffer[20] = "";
        ReadProfileText(L"S", L"a", "default", buffer, name);
        EXPECT_STREQ(buffer, "default");
    }
}

// Windows reads the mark as a part of the first line, and does not find the section in it.
TEST_F(ProfileTogether, WritingRemovesAUtf8ByteOrderMark) {
    profile.Put(std::string("\xEF\xBB\xBF") + before);
    ProfileWriter writer(path.c_str());
    writer.Set(L"S", L"a", "10");
    EXPECT_TRUE(writer.Commit());
    EXPECT_EQ(profile.Content(), "[S]\r\na=10\r\nb=2\r\n[T]\r\nc=3\r\n");
}

TEST_F(ProfileTogether, AReaderReadsTheFileAsItIsAtOneMoment) {
    std::optional<ProfileReader> reader(path.c_str());
    char buffer[20] = "";
    reader->Read(L"S", L"a", "default", buffer);
    EXPECT_STREQ(buffer, "1");
    // A write either waits or does not change the content that the reader has.
    if (std::error_code none; std::filesystem::remove(path, none)) {
        reader->Read(L"S", L"b", "default", buffer);
        EXPECT_STREQ(buffer, "2");
        EXPECT_EQ(profile.Read(L"S", L"b"), "default") << "a later reader must read the new content";
    }
    reader.reset();
}

} // namespace
