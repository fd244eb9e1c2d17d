#include "tests/support/ChildProcess.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <stdexcept>

struct ChildProcess::State {
    HANDLE process = nullptr;
    bool wasKilled = false;
};

ChildProcess::ChildProcess(const std::string& job, const std::filesystem::path& path)
    : state(std::make_unique<State>()) {
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    std::wstring line = L"\"" + std::wstring(program) + L"\" --job \"" + std::wstring(job.begin(), job.end()) +
                        L"\" \"" + path.wstring() + L"\"";
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started{};
    if (!CreateProcessW(program, line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &started))
        throw std::runtime_error("the test program cannot be started a second time");
    CloseHandle(started.hThread);
    state->process = started.hProcess;
}

ChildProcess::~ChildProcess() {
    Kill();
    CloseHandle(state->process);
}

void ChildProcess::Kill() {
    if (IsRunning()) {
        state->wasKilled = true;
        TerminateProcess(state->process, 1);
    }
    Wait();
}

int ChildProcess::Wait() {
    WaitForSingleObject(state->process, INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(state->process, &code);
    return state->wasKilled || code > 255 ? -1 : static_cast<int>(code);
}

bool ChildProcess::IsRunning() { return WaitForSingleObject(state->process, 0) == WAIT_TIMEOUT; }
