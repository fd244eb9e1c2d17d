#pragma once

#include "tests/support/ProfileText.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

/// A profile file in a separate folder. The file does not exist until Put is called.
class ProfileOnDisk {
public:
    std::filesystem::path Path() const { return folder.Path("head.ini"); }
    const std::filesystem::path& Folder() const { return folder.Path(); }
    /// The number of files in its folder: itself, and copies that a write did not remove.
    std::ptrdiff_t FilesInFolder() const {
        const std::filesystem::directory_iterator files(Folder());
        return std::distance(begin(files), end(files));
    }
    bool Exists() const { return std::filesystem::exists(Path()); }

    void Put(const std::string& content) const {
        std::ofstream file(Path(), std::ios::binary | std::ios::trunc);
        if (!(file << content).flush()) throw std::runtime_error("cannot write " + Path().string());
    }

    std::string Content() const {
        std::ifstream file(Path(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string Read(const wchar_t* section, const wchar_t* key, const char* defaultText = "default",
                     std::size_t capacity = 349) const {
        std::vector<char> buffer(capacity, '#');
        ReadProfileText(section, key, defaultText, buffer, Path().wstring().c_str());
        return buffer.data();
    }

    bool Write(const wchar_t* section, const wchar_t* key, std::string_view text) const {
        return WriteProfileText(section, key, text, Path().wstring().c_str());
    }

private:
    TemporaryFolder folder;
};

/// The content of a file, one write into it, and the content that the file must have then.
struct ProfileEdit {
    std::string before;
    const wchar_t* section;
    const wchar_t* key;
    const char* text;
    std::string after;
    const char* why;
};

inline void ExpectEdits(std::span<const ProfileEdit> edits) {
    const ProfileOnDisk profile;
    for (const auto& [before, section, key, text, after, why] : edits) {
        profile.Put(before);
        EXPECT_TRUE(profile.Write(section, key, text)) << why;
        EXPECT_EQ(profile.Content(), after) << why;
    }
}
