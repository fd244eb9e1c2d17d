#include "persistence/HeadGeometryFile.h"

#include "errors/RaiseError.h"
#include "formats/NumberText.h"
#include "platform/ProfileFile.h"

#include <array>

namespace {

/// What a missing value reads as. A stored value of exactly this cannot be told from a missing one, which is accepted.
constexpr double missingValue = 999999999.0;
constexpr const char* missingValueText = "999999999";

/// Longer texts are cut to fit, terminator included.
using ValueText = std::array<char, 349>;

void RequireWritten(bool isWritten) {
    if (!isWritten) {
        RaiseError(QMV_E_WRITE_TO_FILE, L"RoundThePole::WriteDoubleToIniFile", L"Failed To Write To File");
    }
}

} // namespace

double ReadDoubleFromHeadGeometryFile(const wchar_t* section, const wchar_t* key, const wchar_t* fileName) {
    ValueText text{};
    ReadProfileText(section, key, missingValueText, text, fileName);
    // A word reads as 0.0 and is meant to pass: only a value that is not there is an error.
    const double value = TextToDouble(text.data());
    if (value == missingValue) {
        RaiseError(QMV_E_READ_FROM_FILE, L"RoundThePole::ReadDoubleFromIniFile", L"Failed To Read from File");
    }
    return value;
}

void WriteDoubleToHeadGeometryFile(const wchar_t* section, const wchar_t* key, double value, const wchar_t* fileName) {
    RequireWritten(WriteProfileText(section, key, DoubleToScientific(value).data(), fileName));
}

void ReadTogether(const wchar_t* fileName, const std::function<void()>& reads) {
    const ProfileSnapshot snapshot(fileName);
    reads();
}

void WriteTogether(const wchar_t* fileName, const std::function<void()>& writes) {
    ProfileBatch batch(fileName);
    writes();
    RequireWritten(batch.Commit());
}
