#include "persistence/HeadGeometryFile.h"

#include "errors/RaiseError.h"
#include "formats/NumberText.h"

namespace qmv40 {

namespace {

NumberText TextOf(const ProfileReader& file, const HeadGeometryEntry& entry, const char* defaultText) {
    NumberText text{};
    file.Read(entry.section, entry.key, defaultText, text);
    return text;
}

} // namespace

std::optional<std::string> ReadHeadGeometryText(const ProfileReader& file, const HeadGeometryEntry& entry) {
    // Read twice with different defaults: a stored text can be equal to one of them, but not to both.
    std::string text = TextOf(file, entry, missingNumberText).data();
    if (text == missingNumberText && text != TextOf(file, entry, "").data()) return std::nullopt;
    return text;
}

double ReadHeadGeometryNumber(const ProfileReader& file, const HeadGeometryEntry& entry) {
    // A text that is not a number is read as 0.0, as required. Only a missing number is an error.
    const double value = TextToDouble(TextOf(file, entry, missingNumberText).data());
    if (value == missingNumber)
        RaiseError(QMV_E_READ_FROM_FILE, L"RoundThePole::ReadDoubleFromIniFile", L"Failed To Read from File");
    return value;
}

void WriteHeadGeometryNumber(ProfileWriter& file, const HeadGeometryEntry& entry, double value) {
    file.Set(entry.section, entry.key, DoubleToScientific(value).data());
}

void CommitHeadGeometry(ProfileWriter& file) {
    if (!file.Commit())
        RaiseError(QMV_E_WRITE_TO_FILE, L"RoundThePole::WriteDoubleToIniFile", L"Failed To Write To File");
}

} // namespace qmv40
