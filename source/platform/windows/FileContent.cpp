#include "platform/windows/FileContent.h"

#include "formats/EncodedText.h"

namespace qmv40 {

namespace {

/// Nothing for a file that is not open, cannot be read or is too large.
std::optional<std::string> ContentOf(const FileHandle& file) {
    const DWORD size = file.IsOpen() ? GetFileSize(file.Get(), nullptr) : INVALID_FILE_SIZE;
    if (size > largestFile) return std::nullopt; // INVALID_FILE_SIZE is larger
    std::string content(size, '\0');
    DWORD read = 0;
    if (ReadFile(file.Get(), content.data(), size, &read, nullptr) == 0 || read != size) return std::nullopt;
    return content;
}

bool WriteAll(const FileHandle& file, const std::string& content) {
    DWORD written = 0;
    return SetFilePointer(file.Get(), 0, nullptr, FILE_BEGIN) == 0 &&
           WriteFile(file.Get(), content.data(), static_cast<DWORD>(content.size()), &written, nullptr) != 0 &&
           written == content.size() && SetEndOfFile(file.Get()) != 0;
}

} // namespace

std::optional<std::string> ContentOf(const std::wstring& name) {
    return ContentOf(FileHandle(name, GENERIC_READ, shareAll));
}

bool Claim(ContentRight right, const FileHandle& file) {
    OVERLAPPED farBeyond{};
    farBeyond.OffsetHigh = 0x40000000;
    const DWORD how = static_cast<DWORD>(right) | LOCKFILE_FAIL_IMMEDIATELY;
    return LockFileEx(file.Get(), how, 0, 1, 0, &farBeyond) != 0 || GetLastError() != ERROR_LOCK_VIOLATION;
}

bool Overwrite(const std::wstring& name, const std::string& content) {
    const FileHandle file(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ);
    const std::optional<std::string> before = ContentOf(file);
    if (!before || !Claim(ContentRight::toWrite, file)) return false;
    if (WriteAll(file, content)) return true;
    WriteAll(file, *before);
    return false;
}

bool RemoveMark(const std::wstring& name) {
    const std::optional<std::string> content = ContentOf(name);
    const std::string unmarked = content ? EncodedText(*content).Content() : "";
    return !content || unmarked == *content || Overwrite(name, unmarked);
}

} // namespace qmv40
