#include "tools/settings/SettingsFile.h"

#include "formats/AsciiText.h"
#include "formats/RegistryText.h"
#include "tools/text/Failures.h"

#include <algorithm>
#include <charconv>

namespace qmv40::settings {

namespace {

constexpr const char* lineEnd = "\r\n"; // the platform's own import requires it

/// The shortest text without exponent that reads back to the same bits, with at least one decimal.
std::string DecimalText(double value) {
    std::array<char, 400> buffer; // NOLINT(*-member-init): written before it is read
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed);
    std::string text(buffer.data(), result.ec == std::errc{} ? result.ptr : buffer.data() + buffer.size());
    return text.find('.') == std::string::npos ? text + ".0" : text;
}

/// The index after the last setting of the offset that begins at `first`.
std::size_t EndOfOffset(std::size_t first) {
    const auto settings = HeadSettings();
    std::size_t end = first;
    while (end < settings.size() && settings[end].offset == settings[first].offset) ++end;
    return end;
}

} // namespace

std::vector<std::string> EquallyLongTexts(std::span<const double> values) {
    constexpr std::size_t mostLetters = 254;
    std::vector<std::string> texts;
    std::size_t length = 0;
    for (const double value : values) {
        texts.push_back(DecimalText(value));
        length = std::max(length, texts.back().size());
    }
    if (length > mostLetters) throw text::UsageError{"a value takes more than 254 letters, which are not read"};
    for (std::string& text : texts) text.append(length - text.size(), '0');
    return texts;
}

std::string SettingsFileText(const std::array<std::optional<double>, headSettingCount>& values) {
    const auto settings = HeadSettings();
    std::string content = std::string("Windows Registry Editor Version 5.00") + lineEnd + lineEnd + "[" +
                          std::string(machineRoot) + std::string(keyPath) + "]" + lineEnd;
    for (std::size_t first = 0, end = 0; first < headSettingCount; first = end) {
        end = EndOfOffset(first);
        std::vector<double> numbers;
        bool isGiven = false;
        for (std::size_t i = first; i < end; ++i) {
            numbers.push_back(values[i].value_or(settings[i].builtIn));
            isGiven = isGiven || values[i].has_value();
        }
        if (!isGiven) continue;
        const std::vector<std::string> texts = EquallyLongTexts(numbers);
        for (std::size_t i = first; i < end; ++i) {
            content += std::string("\"") + settings[i].name + "\"=\"" + texts[i - first] + "\"" + lineEnd;
        }
    }
    return content;
}

text::FileKind SettingsFileKind() {
    return {"a settings file of the head alone", [](std::string_view content) {
                const RegistryLines file = RegistryLinesIn(std::string(content));
                const std::string ours = std::string(machineRoot) + std::string(keyPath);
                const auto isOurs = [&](const RegistryLine& line) { return ascii::EqualIgnoringCase(line.key, ours); };
                return file.hasFormat && std::ranges::all_of(file.lines, isOurs);
            }};
}

} // namespace qmv40::settings
