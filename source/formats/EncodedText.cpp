#include "formats/EncodedText.h"

#include "formats/Unicode.h"

namespace qmv40 {

namespace {

constexpr std::string_view utf8Mark{"\xEF\xBB\xBF"};
constexpr std::string_view utf16Mark{"\xFF\xFE"};
constexpr std::string_view swappedUtf16Mark{"\xFE\xFF"};

std::endian OrderOf(std::string_view mark) { return mark == utf16Mark ? std::endian::little : std::endian::big; }

} // namespace

EncodedText::EncodedText(std::string_view content) {
    for (const std::string_view known : {utf16Mark, swappedUtf16Mark})
        if (content.starts_with(known)) mark = known;
    content.remove_prefix(content.starts_with(utf8Mark) ? utf8Mark.size() : mark.size());
    if (!mark.empty() && content.size() % 2 != 0) oddByte = content.back();
    text = mark.empty() ? std::string(content) : Utf8FromUtf16(content, OrderOf(mark));
}

std::string EncodedText::Content() const {
    std::string content(mark);
    content += mark.empty() ? text : Utf16FromUtf8(text, OrderOf(mark));
    if (oddByte) content.push_back(*oddByte);
    return content;
}

} // namespace qmv40
