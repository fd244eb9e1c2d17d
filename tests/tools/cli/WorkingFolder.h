#pragma once

#include <filesystem>

/// Changes the current folder of the process. The destructor changes it back.
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
