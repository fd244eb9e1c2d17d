#pragma once

#include "persistence/HeadGeometryFile.h"
#include "tools/component/Calculator.h"
#include "tools/settings/Finding.h"
#include "tools/text/OutputFile.h"

#include <optional>
#include <string>
#include <vector>

namespace qmv40::settings {

/// One of the seven numbers of a head geometry file, as the component reads it.
struct GeometryFileEntry {
    std::string section;
    std::string key;
    std::optional<std::string> text; ///< empty when the entry is missing
    double value;                    ///< as the component reads the text; 0.0 when the entry is missing
    std::string problem;             ///< "is missing", or why the number is doubtful; empty when nothing is wrong

    std::string Name() const { return "[" + section + "] " + key; }
};

/// The seven entries of a head geometry file, read at one moment, in the order of headGeometryEntries.
class GeometryFile {
public:
    /// Throws InputError for a file that is missing or a folder.
    explicit GeometryFile(const std::string& fileName);

    const std::string& Name() const { return name; }
    const std::vector<GeometryFileEntry>& Entries() const { return entries; }
    bool LacksEntry() const;
    std::array<double, headGeometryEntries.size()> Numbers() const;

    /// Throws DoubtfulInput, with the line of each entry, unless all seven are numbers. The component reads a word as 0
    /// and ends a number at a decimal comma. It would plan with such numbers.
    void RequireNumbers() const;

private:
    std::string name;
    std::vector<GeometryFileEntry> entries;
};

/// A file that a geometry may be saved into: it has a section of a geometry, and all its lines are sections, entries or
/// comments.
text::FileKind GeometryFileKind();

/// What `qmv40 doctor` tells about a head geometry file.
struct GeometryFileState {
    std::string state; ///< "missing", "unreadable", "looked at", "refused by the component" or "loaded"
    std::vector<GeometryFileEntry> entries;
    std::vector<std::string> ignored; ///< lines that are not used
    std::vector<Finding> findings;
};

/// `calculator` is null when the component cannot be created. Then the file is examined but not loaded.
GeometryFileState ExamineGeometryFile(const std::string& fileName, component::Calculator* calculator);

} // namespace qmv40::settings
