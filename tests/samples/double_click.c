/* double_click <program> <file>: starts a program as a double click does, in a console of its own; its output goes to the
 * file. It is given Enter after two seconds. Ends with 0 when it waited for that. */

#include <windows.h>

#include <stdio.h>

static const DWORD while_it_waits = 2000; /* milliseconds */
static const DWORD until_it_ends = 60000;

static BOOL start(const wchar_t* program, HANDLE input, HANDLE output, PROCESS_INFORMATION* process) {
    STARTUPINFOW how = {sizeof how};
    how.dwFlags = STARTF_USESTDHANDLES;
    how.hStdInput = input;
    how.hStdOutput = output;
    how.hStdError = output;
    return CreateProcessW(program, NULL, NULL, NULL, TRUE, CREATE_NEW_CONSOLE, NULL, NULL, &how, process);
}

int wmain(int count, wchar_t** arguments) {
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, NULL, TRUE};
    PROCESS_INFORMATION process;
    HANDLE input, keyboard, output;
    DWORD written;
    if (count != 3 || !CreatePipe(&input, &keyboard, &inherited, 0)) return 2;
    SetHandleInformation(keyboard, HANDLE_FLAG_INHERIT, 0);
    output = CreateFileW(arguments[2], GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, 0, NULL);
    if (!start(arguments[1], input, output, &process)) return 2;
    if (WaitForSingleObject(process.hProcess, while_it_waits) != WAIT_TIMEOUT) return 3;
    WriteFile(keyboard, "\r\n", 2, &written, NULL);
    return WaitForSingleObject(process.hProcess, until_it_ends) == WAIT_OBJECT_0 ? 0 : 4;
}
