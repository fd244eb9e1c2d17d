#include "tools/settings/Finding.h"

#include <algorithm>

namespace qmv40::settings {

Finding FindingAbout(const Subject& subject, std::string name, Severity severity, const std::string& problem,
                     std::string remedy) {
    const std::string quoted = subject.name.empty() ? "" : '"' + subject.name + "\" ";
    return {.name = std::move(name),
            .severity = severity,
            .sentence = quoted + problem + ".",
            .remedy = std::move(remedy),
            .place = subject.line ? "line " + std::to_string(*subject.line) : "",
            .amount = "",
            .details = {{"line", subject.line}, {"about", subject.name}}};
}

void SortByLine(std::vector<Finding>& findings) {
    std::ranges::stable_sort(findings, {},
                             [](const Finding& each) { return each.details.Find("line")->Number().value_or(0.0); });
}

} // namespace qmv40::settings
