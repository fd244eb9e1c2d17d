#include "platform/ProfileFile.h"

namespace qmv40 {

ProfileWriter::ProfileWriter(const wchar_t* fileName) : file(fileName == nullptr ? L"" : fileName) {}

void ReadProfileText(const wchar_t* section, const wchar_t* key, const char* defaultText, std::span<char> buffer,
                     const wchar_t* fileName) {
    ProfileReader(fileName).Read(section, key, defaultText, buffer);
}

bool WriteProfileText(const wchar_t* section, const wchar_t* key, std::string_view text, const wchar_t* fileName) {
    ProfileWriter writer(fileName);
    writer.Set(section, key, text);
    return writer.Commit();
}

} // namespace qmv40
