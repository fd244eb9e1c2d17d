#pragma once

#include <filesystem>

/// Makes a folder the process's own for a while.
class WorkingFolder {
public:
    explicit WorkingFolder(const std::filesystem::path& folder) : before(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    WorkingFolder(const WorkingFolder&) = delete;
    WorkingFolder& operator=(const WorkingFolder&) = delete;
    ~WorkingFolder() { std::filesystem::current_path(before); }

private:
    std::filesystem::path before;
};
