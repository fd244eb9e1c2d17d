#pragma once

#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

/// A separate folder for one test: empty at first, removed with its content at the end. Its name contains blanks,
/// because users' folders do.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        do {
            folder = std::filesystem::temp_directory_path() / ("qmv40 test " + std::to_string(random()));
        } while (!std::filesystem::create_directory(folder));
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }

    const std::filesystem::path& Path() const noexcept { return folder; }
    std::filesystem::path Path(const std::string& name) const { return folder / name; }
    bool IsEmpty() const { return std::filesystem::is_empty(folder); }

    // Names in UTF-8, of files that need not exist

    std::string Name(const std::string& utf8FileName) const { return Utf8(folder / FromUtf8(utf8FileName)); }
    /// Writes a file byte for byte and returns its name.
    std::string Write(const std::string& utf8FileName, std::string_view content) const {
        std::ofstream file(folder / FromUtf8(utf8FileName), std::ios::binary);
        file.write(content.data(), static_cast<std::streamsize>(content.size()));
        if (!file.flush()) throw std::runtime_error("cannot write " + utf8FileName);
        return Name(utf8FileName);
    }

private:
    static std::filesystem::path FromUtf8(const std::string& name) { return std::u8string(name.begin(), name.end()); }
    static std::string Utf8(const std::filesystem::path& path) {
        const std::u8string name = path.u8string();
        return {name.begin(), name.end()};
    }

    std::filesystem::path folder;
};
