#include "tests/neighbours/HostSnapshot.h"

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

void HostSnapshot::AddPlatform() {
    // The variables follow each other, each with its terminator. A line is longer than its variable by "env ".
    char* const variables = GetEnvironmentStringsA();
    for (const char* variable = variables; *variable != '\0'; variable += lines.back().size() - 3)
        lines.push_back(std::string("env ") + variable);
    FreeEnvironmentStringsA(variables);
    DWORD handles = 0;
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    lines.push_back("handles " + std::to_string(handles));
    lines.push_back("thread's locale " + std::to_string(GetThreadLocale()));
    lines.push_back("error mode " + std::to_string(GetErrorMode()));
}
