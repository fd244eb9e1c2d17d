#include "tests/neighbours/HostSnapshot.h"

#include <algorithm>
#include <clocale>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <locale.h>
#include <system_error>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

/// The open files by number and name, without the folder that lists them.
std::vector<std::string> OpenFiles() {
    std::vector<std::string> files;
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const fs::path target = fs::read_symlink(entry.path(), gone);
        if (!gone && !target.string().ends_with("/fd"))
            files.push_back("open " + entry.path().filename().string() + " " + target.string());
    }
    std::ranges::sort(files);
    return files;
}

/// The lines of the process's status that it can set itself, and the number of its threads.
std::vector<std::string> Status() {
    std::vector<std::string> kept;
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);)
        for (const char* const name : {"Umask:", "Threads:", "SigBlk:", "SigIgn:", "SigCgt:", "SigPnd:", "ShdPnd:"})
            if (line.starts_with(name)) kept.push_back(line);
    return kept;
}

} // namespace

void HostSnapshot::AddPlatform() {
    const auto add = [&](std::vector<std::string> more) { std::ranges::move(more, std::back_inserter(lines)); };
    add(OpenFiles());
    add(Status());
    for (char** variable = environ; *variable != nullptr; ++variable) lines.push_back(std::string("env ") + *variable);
    lines.push_back(::uselocale(nullptr) == LC_GLOBAL_LOCALE ? "no locale of the thread's own" : "a thread's locale");
}
