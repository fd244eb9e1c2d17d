#pragma once

#include "platform/Automation.h"

#include <optional>
#include <string>
#include <utility>

namespace qmv40 {

/// An open file, or none. Names are wide, because a host can change the code page of the narrow file functions.
class FileHandle {
public:
    FileHandle() = default;
    FileHandle(const std::wstring& name, DWORD access, DWORD sharing, DWORD disposition = OPEN_EXISTING)
        : handle(CreateFileW(name.c_str(), access, sharing, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr)) {}
    FileHandle(FileHandle&& other) noexcept : handle(std::exchange(other.handle, INVALID_HANDLE_VALUE)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        std::swap(handle, other.handle);
        return *this;
    }
    ~FileHandle() {
        if (IsOpen()) CloseHandle(handle);
    }

    bool IsOpen() const noexcept { return handle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const noexcept { return handle; }

private:
    HANDLE handle = INVALID_HANDLE_VALUE;
};

inline constexpr DWORD shareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

} // namespace qmv40
