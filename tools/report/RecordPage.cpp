#include "tools/report/RecordPage.h"

#include "tools/view/Markup.h"

namespace qmv40::report {

namespace {

constexpr const char* recordMark = "<!-- qmv40/geometry record -->";

constexpr const char* pageStyle =
    ":root{color-scheme:light dark}"
    "body{font:10pt/1.35 sans-serif;max-width:190mm;margin:8mm auto;padding:0 4mm}"
    "h1{font-size:15pt;margin:0 0 2mm}h2{font-size:11pt;margin:4mm 0 1mm}"
    "table{border-collapse:collapse;font-size:8.5pt}td,th{padding:.3mm 4mm .3mm 0;text-align:left;vertical-align:top;"
    "overflow-wrap:anywhere}th{font-weight:normal;opacity:.7}td.n{text-align:right;white-space:nowrap;font-variant-"
    "numeric:tabular-nums}"
    ".verdict{font-size:13pt;font-weight:bold}.fault{color:#c0392b}.warning{color:#b9770e}.good{color:#1e8449}"
    ".finding{margin:1mm 0}.finding b{font-weight:bold}figure{margin:2mm 0}svg{max-width:100%;height:auto}"
    ".columns{columns:2;column-gap:8mm}section{break-inside:avoid}"
    ".signed{margin-top:6mm;display:flex;gap:10mm}.signed span{border-top:.2mm solid;flex:1;padding-top:1mm}"
    "@media print{:root{color-scheme:light}body{margin:0;padding:0;max-width:none;font-size:9pt}"
    "svg{max-height:120mm}@page{size:A4;margin:12mm}}";

std::string Element(const std::string& name, const std::string& attributes, const std::string& words) {
    return "<" + name + attributes + ">" + view::MarkupText(words) + "</" + name + ">";
}

/// The first cell of a row names it, the others are figures.
std::string Row(const std::vector<std::string>& cells, const char* name) {
    std::string row = "<tr>";
    for (const std::string& cell : cells) row += Element(name, &cell == &cells.front() ? "" : " class=\"n\"", cell);
    return row + "</tr>\n";
}

std::string Section(const RecordSection& section) {
    std::string page = "<section>" + Element("h2", "", section.title) + "\n<table>\n";
    if (!section.columns.empty()) page += Row(section.columns, "th");
    for (const auto& row : section.rows) page += Row(row, "td");
    return page + "</table></section>\n";
}

} // namespace

std::string FindingsMarkup(const std::vector<text::Finding>& findings) {
    std::string markup;
    for (const text::Finding& finding : findings) {
        const std::string heading = std::string(NameOf(finding.severity)) + ": " + finding.name;
        markup += "<p class=\"finding\">" + Element("b", "", heading) + "<br>" + view::MarkupText(finding.sentence) +
                  "<br>" + view::MarkupText("\xE2\x86\x92 " + finding.remedy) + "</p>\n";
    }
    return markup;
}

std::string RecordPage(const Record& record) {
    std::string page = std::string("<!DOCTYPE html>") + recordMark +
                       "\n<html lang=\"en\"><head><meta charset=\"utf-8\">" + Element("title", "", record.title) +
                       "<style>" + pageStyle + "</style></head>\n<body>\n" + Element("h1", "", record.title) + "\n<p>" +
                       Element("span", " class=\"verdict " + record.verdict + "\"", "Verdict: " + record.verdict) +
                       ". " + view::MarkupText(record.meaning) + "</p>\n" + FindingsMarkup(record.findings);
    if (!record.picture.empty()) page += "<figure>" + record.picture + "</figure>\n";
    page += "<div class=\"columns\">\n";
    for (const RecordSection& section : record.sections) page += Section(section);
    return page + "</div>\n<p class=\"signed\"><span>Date</span><span>Name</span><span>Signature</span></p>\n"
                  "</body></html>\n";
}

text::FileKind RecordKind() { return text::KindMarked("a record of `qmv40 geometry`", recordMark); }

} // namespace qmv40::report
