#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

/// A job that this test program does when it is started for that alone: it gets the path that its starter names, and
/// its result is the process's exit code. Defined at namespace scope; the program is linked with ChildMain.cpp.
class ChildJob {
public:
    ChildJob(const char* name, std::function<int(const std::filesystem::path&)> job);

    /// The exit code of the job called `name`.
    static int Run(const std::string& name, const std::filesystem::path& path);
};

/// This test program, started a second time for one job.
class ChildProcess {
public:
    ChildProcess(const std::string& job, const std::filesystem::path& path);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    /// Kills it if it still runs.
    ~ChildProcess();

    /// Kills it at once: it cannot clean up.
    void Kill();
    /// Waits for its end: its exit code, or -1 when it was killed or crashed.
    int Wait();
    bool IsRunning();

private:
    struct State;
    std::unique_ptr<State> state;
};
