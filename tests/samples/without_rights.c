/* without_rights <command line>: runs it without the rights of an administrator, and returns its exit code. */
#include <stdio.h>
#include <windows.h>

int wmain(int count, wchar_t** arguments) {
    SID_IDENTIFIER_AUTHORITY authority = SECURITY_NT_AUTHORITY;
    SID_AND_ATTRIBUTES administrators = {NULL, 0};
    HANDLE own = NULL, restricted = NULL;
    STARTUPINFOW start = {sizeof start};
    PROCESS_INFORMATION process;
    DWORD result = 1;
    if (count != 2 ||
        !AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0, 0, 0, 0, 0, 0,
                                  &administrators.Sid) ||
        !OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &own) ||
        !CreateRestrictedToken(own, DISABLE_MAX_PRIVILEGE, 1, &administrators, 0, NULL, 0, NULL, &restricted) ||
        !CreateProcessAsUserW(restricted, NULL, arguments[1], NULL, NULL, TRUE, 0, NULL, NULL, &start, &process)) {
        fprintf(stderr, "error %lu\n", GetLastError());
        return 100;
    }
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &result);
    return (int)result;
}
