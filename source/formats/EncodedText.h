#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qmv40 {

/// A text file's content, taken apart into the byte-order mark and the text, and put together again. UTF-16 is
/// converted to UTF-8. The bytes of a file without a mark are taken as they are.
class EncodedText {
public:
    explicit EncodedText(std::string_view content);

    /// The content with `text` in it. A UTF-8 mark is left out: Windows' profile functions take it for a part of the
    /// first line, and a section in that line is not found.
    std::string Content() const;

    std::string text;

private:
    std::string_view mark;       ///< of UTF-16, or empty
    std::optional<char> oddByte; ///< the last one of a damaged UTF-16 file, which is kept
};

} // namespace qmv40
