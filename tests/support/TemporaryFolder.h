#pragma once

#include <filesystem>
#include <random>
#include <string>
#include <system_error>

/// A folder of its own for one test, empty at first and removed with everything in it at the end.
class TemporaryFolder {
public:
    TemporaryFolder() {
        std::random_device random;
        do {
            folder = std::filesystem::temp_directory_path() / ("qmv40-test-" + std::to_string(random()));
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

private:
    std::filesystem::path folder;
};
