#pragma once

#include "tools/text/Finding.h"
#include "tools/text/OutputFile.h"

#include <string>
#include <vector>

namespace qmv40::report {

/// One page about a capture, to print and to keep. The texts are plain; the page escapes them.

/// A heading, and below it a table, the first row of which may name the columns.
struct RecordSection {
    std::string title;
    std::vector<std::string> columns; ///< empty: the table has no heading row
    std::vector<std::vector<std::string>> rows;
};

struct Record {
    std::string title;
    std::string verdict; ///< "good", "warning" or "fault", nothing else: it is also the name of a style
    std::string meaning; ///< of the verdict, a sentence
    std::vector<text::Finding> findings;
    std::string picture; ///< an `svg` element, which is not escaped
    std::vector<RecordSection> sections;
};

/// Findings as paragraphs of a page.
std::string FindingsMarkup(const std::vector<text::Finding>& findings);

/// The page: one file that needs no other. It is laid out for A4 paper.
std::string RecordPage(const Record& record);

/// The kind of such files.
text::FileKind RecordKind();

} // namespace qmv40::report
