#pragma once

#include "platform/ProfileFile.h"

/// Reads or writes a single value of a profile file.

inline void ReadProfileText(const wchar_t* section, const wchar_t* key, const char* defaultText, std::span<char> buffer,
                            const wchar_t* fileName) {
    qmv40::ProfileReader(fileName).Read(section, key, defaultText, buffer);
}

inline bool WriteProfileText(const wchar_t* section, const wchar_t* key, std::string_view text,
                             const wchar_t* fileName) {
    qmv40::ProfileWriter writer(fileName);
    writer.Set(section, key, text);
    return writer.Commit();
}
