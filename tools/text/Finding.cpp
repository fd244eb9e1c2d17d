#include "tools/text/Finding.h"

#include "tools/text/Console.h"

#include <sstream>

namespace qmv40::text {

std::string_view NameOf(Severity severity) {
    constexpr std::string_view names[] = {"note", "warning", "fault"};
    return names[static_cast<std::size_t>(severity)];
}

Json FindingJson(const Finding& finding) {
    Json document{{"name", finding.name},
                  {"severity", NameOf(finding.severity)},
                  {"sentence", finding.sentence},
                  {"remedy", finding.remedy}};
    document.Update(finding.details);
    return document;
}

Json FindingsJson(std::span<const Finding> findings) {
    Json list = Json::Array();
    for (const Finding& finding : findings) list.PushBack(FindingJson(finding));
    return list;
}

void PrintFinding(const Finding& finding, std::ostream& out, bool colour) {
    const std::string name = std::string(NameOf(finding.severity)) + ": " + finding.name;
    const bool isRed = colour && finding.severity == Severity::Fault;
    out << "  " << finding.place << (finding.place.empty() ? "" : ": ") << (isRed ? Red(name) : name)
        << (finding.amount.empty() ? "" : " by ") << finding.amount << '\n'
        << Wrapped("    ", finding.sentence) << Wrapped("    -> ", finding.remedy);
}

void PrintFindings(std::span<const Finding> findings, std::ostream& out, bool colour) {
    for (const Finding& finding : findings) PrintFinding(finding, out, colour);
}

std::string Wrapped(const std::string& first, const std::string& text) {
    constexpr std::size_t width = 100;
    std::istringstream words(text);
    std::string lines = first;
    std::size_t column = first.size();
    for (std::string word; words >> word;) {
        const bool isFirst = column == first.size();
        if (!isFirst && column + 1 + word.size() > width) {
            lines += "\n" + std::string(first.size(), ' ');
            column = first.size();
        } else if (!isFirst) {
            lines += ' ';
            ++column;
        }
        lines += word;
        column += word.size();
    }
    return lines + "\n";
}

} // namespace qmv40::text
