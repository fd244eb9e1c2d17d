#include "platform/ProfileOnDisk.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

/// Several writes, or several reads, of one file as one.

namespace {

constexpr const char* before = "[S]\r\na=1\r\nb=2\r\n[T]\r\nc=3\r\n";

class ProfileBatches : public testing::Test {
protected:
    ProfileBatches() { profile.Put(before); }

    ProfileOnDisk profile;
    std::wstring path = profile.Path().wstring();
};

TEST_F(ProfileBatches, ReachTheFileTogetherAndInTheirOrder) {
    ProfileBatch batch(path.c_str());
    EXPECT_TRUE(profile.Write(L"S", L"a", "10"));
    EXPECT_TRUE(profile.Write(L"S", L"new", "11"));
    EXPECT_TRUE(profile.Write(L"S", L"a", "12"));
    EXPECT_TRUE(profile.Write(L"S", L"b", nullptr));
    EXPECT_TRUE(profile.Write(L"T", nullptr, nullptr));
    EXPECT_TRUE(profile.Write(L"U", L"d", "13"));
    EXPECT_EQ(profile.Content(), before);
    EXPECT_TRUE(batch.Commit());
    EXPECT_EQ(profile.Content(), "[S]\r\na=12\r\nnew=11\r\n[U]\r\nd=13\r\n");
}

TEST_F(ProfileBatches, MakeAFileThatIsNotThere) {
    std::filesystem::remove(path);
    ProfileBatch batch(path.c_str());
    EXPECT_TRUE(profile.Write(L"S", L"a", "1"));
    EXPECT_TRUE(profile.Write(L"T", L"b", "2"));
    EXPECT_FALSE(profile.Exists());
    EXPECT_TRUE(batch.Commit());
    EXPECT_EQ(profile.Content(), "[S]\r\na=1\r\n[T]\r\nb=2\r\n");
}

TEST_F(ProfileBatches, ComeToNothingWithoutACommit) {
    {
        ProfileBatch batch(path.c_str());
        EXPECT_TRUE(profile.Write(L"S", L"a", "10"));
    }
    EXPECT_EQ(profile.Content(), before);
    const std::filesystem::directory_iterator files(profile.Folder());
    EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "and leave nothing behind";
    EXPECT_TRUE(profile.Write(L"S", L"a", "11"));
    EXPECT_NE(profile.Content(), before) << "later writes are none of theirs";
}

TEST_F(ProfileBatches, HoldBackNoWriteToAnotherFile) {
    const ProfileOnDisk other;
    ProfileBatch batch(path.c_str());
    EXPECT_TRUE(other.Write(L"S", L"a", "1"));
    EXPECT_EQ(other.Content(), "[S]\r\na=1\r\n");
}

TEST_F(ProfileBatches, OfTwoFilesDoNotMeet) {
    const ProfileOnDisk other;
    ProfileBatch outer(path.c_str());
    EXPECT_TRUE(profile.Write(L"S", L"a", "10"));
    {
        ProfileBatch inner(other.Path().wstring().c_str());
        EXPECT_TRUE(other.Write(L"S", L"a", "20"));
        EXPECT_TRUE(profile.Write(L"S", L"b", "11"));
        EXPECT_EQ(profile.Content(), before) << "the outer one's";
        EXPECT_TRUE(inner.Commit());
    }
    EXPECT_TRUE(outer.Commit());
    EXPECT_EQ(other.Content(), "[S]\r\na=20\r\n");
    EXPECT_EQ(profile.Content(), "[S]\r\na=10\r\nb=11\r\n[T]\r\nc=3\r\n");
}

TEST_F(ProfileBatches, AreTheirThreadsOwn) {
    ProfileOnDisk other;
    ProfileBatch batch(path.c_str());
    EXPECT_TRUE(profile.Write(L"S", L"a", "10"));
    std::thread([&] {
        EXPECT_TRUE(other.Write(L"S", L"a", "1"));
        EXPECT_EQ(profile.Read(L"S", L"a"), "1") << "the file's own";
    }).join();
    EXPECT_TRUE(batch.Commit());
    EXPECT_EQ(profile.Read(L"S", L"a"), "10");
}

TEST_F(ProfileBatches, AreRefusedWhereNoFileCanBe) {
    for (const auto& place : {profile.Folder() / "none" / "head.ini", profile.Folder()}) {
        const std::wstring name = place.wstring();
        ProfileBatch batch(name.c_str());
        const bool isWritten = WriteProfileText(L"S", L"a", "1", name.c_str());
        EXPECT_FALSE(isWritten && batch.Commit());
    }
}

TEST_F(ProfileBatches, SurviveWithoutAName) {
    for (const wchar_t* const name : {static_cast<const wchar_t*>(nullptr), L""}) {
        const ProfileSnapshot snapshot(name);
        const ProfileBatch batch(name);
        EXPECT_EQ(profile.Read(L"S", L"a"), "1");
    }
}

TEST_F(ProfileBatches, AreReadBesideASnapshotOfAnotherFile) {
    const ProfileOnDisk other;
    other.Put("[S]\r\na=7\r\n");
    const ProfileSnapshot snapshot(path.c_str());
    EXPECT_EQ(profile.Read(L"S", L"a"), "1");
    EXPECT_EQ(profile.Read(L"T", L"c"), "3");
    EXPECT_EQ(other.Read(L"S", L"a"), "7");
    EXPECT_TRUE(other.Write(L"S", L"a", "8"));
    EXPECT_EQ(other.Read(L"S", L"a"), "8");
}

} // namespace
