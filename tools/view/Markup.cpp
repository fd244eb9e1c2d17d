#include "tools/view/Markup.h"

#include "tools/text/Failures.h"
#include "tools/text/Json.h"

#include <map>

namespace qmv40::view {

namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

/// The first character of a valid text.
std::string_view FirstCharacter(std::string_view text) {
    std::size_t length = 1;
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U) ++length;
    return text.substr(0, length);
}

/// The character as markup writes it.
std::string_view Written(std::string_view character) {
    static constexpr std::pair<char, std::string_view> references[] = {
        {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&#39;"}};
    for (const auto& [plain, reference] : references) {
        if (character.front() == plain) return reference;
    }
    const bool isControl = static_cast<unsigned char>(character.front()) < 0x20 || character.front() == 0x7F;
    const bool isNoCharacter = character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF"; // U+FFFE, U+FFFF
    return isControl || isNoCharacter ? replacement : character;
}

std::size_t ColumnsOf(std::string_view character) {
    constexpr unsigned char firstLeadOfWideLetters = 0xE1; // U+1000 and up
    return static_cast<unsigned char>(character.front()) >= firstLeadOfWideLetters ? 2 : 1;
}

/// The positions of the placeholders, and the filling of each.
std::map<std::size_t, const Filling*> PlacesIn(const std::string& fileName, std::string_view content,
                                               std::span<const Filling> fillings) {
    std::map<std::size_t, const Filling*> places;
    for (const Filling& filling : fillings) {
        const std::size_t at = content.find(filling.placeholder);
        if (at == std::string_view::npos || content.find(filling.placeholder, at + 1) != std::string_view::npos) {
            throw text::InputError{fileName,
                                   {},
                                   "is no template of this tool: " + std::string(filling.placeholder) +
                                       " must stand in it once"};
        }
        places[at] = &filling;
    }
    return places;
}

} // namespace

std::string MarkupText(const std::string& text) {
    const std::string valid = text::ValidUtf8(text);
    std::string written;
    for (std::string_view rest = valid; !rest.empty(); rest.remove_prefix(FirstCharacter(rest).size())) {
        written += Written(FirstCharacter(rest));
    }
    return written;
}

std::string CutText(const std::string& text, std::size_t columns) {
    std::string valid = text::ValidUtf8(text);
    std::size_t taken = 0;
    std::size_t width = 0;
    std::size_t withDots = 0; ///< the length that is kept when the text is too long
    while (taken < valid.size()) {
        const std::string_view character = FirstCharacter(std::string_view(valid).substr(taken));
        width += ColumnsOf(character);
        if (width > columns) return valid.substr(0, withDots) + "…";
        taken += character.size();
        if (width < columns) withDots = taken;
    }
    return valid;
}

std::string FilledTemplate(const std::string& fileName, std::string_view content, std::span<const Filling> fillings) {
    std::string filled;
    std::size_t copied = 0;
    for (const auto& [at, filling] : PlacesIn(fileName, content, fillings)) {
        filled.append(content.substr(copied, at - copied)).append(filling->text);
        copied = at + filling->placeholder.size();
    }
    return filled.append(content.substr(copied));
}

std::string Base64(std::string_view bytes) {
    constexpr std::string_view letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t at = 0; at < bytes.size(); at += 3) {
        const auto byte = [&](std::size_t i) {
            return at + i < bytes.size() ? static_cast<unsigned int>(static_cast<unsigned char>(bytes[at + i])) : 0U;
        };
        const unsigned int group = byte(0) << 16U | byte(1) << 8U | byte(2);
        for (unsigned int i = 0; i < 4; ++i) {
            text += at + i > bytes.size() ? '=' : letters[(group >> (18U - 6U * i)) & 63U];
        }
    }
    return text;
}

} // namespace qmv40::view
