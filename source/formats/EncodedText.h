#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace qmv40 {

/// Larger files are neither read nor changed, except by Windows' profile functions: no profile or settings file is so
/// large.
inline constexpr std::size_t largestFile = 16U << 20;

/// The content of a text file, split into the byte-order mark and the text. UTF-16 is converted to UTF-8 and back. The
/// bytes of a file without a mark are kept unchanged.
class EncodedText {
public:
    explicit EncodedText(std::string_view content);

    /// The content of a file that holds `text`. It has no UTF-8 mark: Windows' profile functions would read the mark as
    /// part of the first line and not find a section in that line.
    std::string Content() const;

    std::string text;

private:
    std::string_view mark;       ///< the UTF-16 mark, or empty
    std::optional<char> oddByte; ///< the last byte of a damaged UTF-16 file; Content() appends it again
};

} // namespace qmv40
