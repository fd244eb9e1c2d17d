#include "tools/view/PageTemplate.h"

#include "tools/text/Failures.h"
#include "tools/text/Text.h"

namespace qmv40::view {

namespace {

constexpr const char* installedPage = "share/qmv40/view.html";
constexpr const char* pageMark = "<!-- qmv40/view page -->";

} // namespace

std::string FindPageTemplate(const std::filesystem::path& programFolder) {
    // On most systems the page is installed in a folder beside that of the programs, otherwise beside the program
    // itself.
    const std::filesystem::path places[] = {programFolder.parent_path() / installedPage, programFolder / installedPage};
    std::error_code ignored;
    for (const std::filesystem::path& place : places) {
        if (std::filesystem::is_regular_file(place, ignored)) return text::Utf8Name(place);
    }
    throw text::InputError{text::Utf8Name(places[0]),
                           {},
                           "no such file, nor is there " + text::Utf8Name(places[1]) +
                               ". The page belongs to the tool: install or build it anew, or name it with --template. "
                               "--svg works without it"};
}

std::string MarkedPage(std::string page) {
    constexpr std::string_view documentType{"<!DOCTYPE html>"};
    return page.insert(page.starts_with(documentType) ? documentType.size() : 0, pageMark);
}

text::FileKind PageKind() { return text::KindMarked("a page of `qmv40 view`", pageMark); }

} // namespace qmv40::view
