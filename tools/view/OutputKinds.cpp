#include "tools/view/OutputKinds.h"

#include <string_view>

namespace qmv40::view {

namespace {

constexpr const char* pageMark = "<!-- qmv40/view page -->";
constexpr const char* drawingMark = "<!-- qmv40/view drawing -->";

} // namespace

text::FileKind PageKind() { return text::KindMarked("a page of `qmv40 view`", pageMark); }

text::FileKind DrawingKind() { return text::KindMarked("a drawing of `qmv40 view`", drawingMark); }

std::string MarkedPage(std::string page) {
    constexpr std::string_view documentType{"<!DOCTYPE html>"};
    return page.insert(page.starts_with(documentType) ? documentType.size() : 0, pageMark);
}

std::string DrawingFileStart() { return std::string(R"(<?xml version="1.0" encoding="UTF-8"?>)") + drawingMark + "\n"; }

} // namespace qmv40::view
