#pragma once

#include "tools/text/Json.h"

#include <ostream>
#include <span>
#include <string>
#include <string_view>

namespace qmv40::text {

enum class Severity {
    Note,    ///< something cannot be judged, or is worth knowing
    Warning, ///< the result holds, but not as well as it should
    Fault    ///< the result is wrong, or must not be run
};

/// "note", "warning", "fault"
std::string_view NameOf(Severity severity);

/// A finding of a command, in the shape that all commands share.
struct Finding {
    std::string name; ///< short and fixed: programs look for it
    Severity severity = Severity::Fault;
    std::string sentence;          ///< what is wrong
    std::string remedy;            ///< what to do next
    std::string place;             ///< where, for people: "plan 2, move 3 UnLock"; empty when the sentence says it
    std::string amount;            ///< by how much, for people: "2.0000 mm"; empty when there is none
    Json details = Json::Object(); ///< the members of the document that only this kind of finding has
};

/// {"name", "severity", "sentence", "remedy"} and the details.
Json FindingJson(const Finding& finding);
/// A list of them.
Json FindingsJson(std::span<const Finding> findings);

/// One line with place, severity, name and amount; below it the sentence, and the remedy behind an arrow. With `colour`
/// the severity and name of a fault are red.
void PrintFinding(const Finding& finding, std::ostream& out, bool colour = false);
void PrintFindings(std::span<const Finding> findings, std::ostream& out, bool colour = false);

/// Breaks the text at blanks so that no line is longer than 100 columns. The first line begins with
/// `first`, the other lines with as many blanks.
std::string Wrapped(const std::string& first, const std::string& text);

} // namespace qmv40::text
