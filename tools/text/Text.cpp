#include "tools/text/Text.h"

namespace qmv40::text {

std::filesystem::path PathOf(const std::string& utf8Name) { return {std::u8string(utf8Name.begin(), utf8Name.end())}; }

std::string Utf8Name(const std::filesystem::path& path) {
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
}

} // namespace qmv40::text
