#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

/// A job for which this test program is started a second time. The job gets a path from the first process, and its
/// result is the exit code of the second. Define it at namespace scope, and link the program with ChildMain.cpp.
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
    /// Waits for the end of the process. Returns its exit code, or -1 if it was killed or crashed.
    int Wait();
    bool IsRunning();

private:
    struct State;
    std::unique_ptr<State> state;
};
