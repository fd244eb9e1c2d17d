#include "platform/ProfileOnDisk.h"

#include <gtest/gtest.h>

#include <optional>

/// Reads of one file at one moment.

namespace {

TEST(ProfileSnapshots, ShowTheFileAsItWasWhateverBecomesOfIt) {
    const ProfileOnDisk profile;
    profile.Put("[S]\na=1\nb=2\n");
    std::optional<ProfileSnapshot> snapshot(profile.Path().wstring().c_str());
    EXPECT_TRUE(profile.Write(L"S", L"a", "10"));
    EXPECT_EQ(profile.Read(L"S", L"a"), "1");
    std::filesystem::remove(profile.Path());
    EXPECT_EQ(profile.Read(L"S", L"b"), "2");
    EXPECT_EQ(profile.Read(L"S", L"none"), "default");
    snapshot.reset();
    EXPECT_EQ(profile.Read(L"S", L"b"), "default") << "and afterwards as it is";
}

TEST(ProfileSnapshots, OfTwoFilesDoNotMeet) {
    const ProfileOnDisk profile, other;
    profile.Put("[S]\na=1\n");
    other.Put("[S]\na=2\n");
    const ProfileSnapshot outer(profile.Path().wstring().c_str());
    {
        const ProfileSnapshot inner(other.Path().wstring().c_str());
        other.Put("[S]\na=4\n");
        profile.Put("[S]\na=5\n");
        EXPECT_EQ(other.Read(L"S", L"a"), "2");
        EXPECT_EQ(profile.Read(L"S", L"a"), "1");
    }
    profile.Put("[S]\na=3\n");
    EXPECT_EQ(profile.Read(L"S", L"a"), "1");
}

TEST(ProfileSnapshots, OfAFileThatIsNotThereKeepItSo) {
    const ProfileOnDisk profile;
    const ProfileSnapshot snapshot(profile.Path().wstring().c_str());
    profile.Put("[S]\na=1\n");
    EXPECT_EQ(profile.Read(L"S", L"a"), "default");
}

} // namespace
