#pragma once

#include "tools/component/Calculator.h"
#include "tools/settings/Complaint.h"

#include <optional>
#include <string>
#include <vector>

namespace qmv40::settings {

/// One of the seven numbers of a head geometry file, as the component reads it.
struct GeometryFileValue {
    const char* section;
    const char* key;
    std::optional<std::string> text; ///< nothing where there is none
    double value;                    ///< what the text reads as; 0.0 where there is none
};

/// A head geometry file, looked at without trusting it.
struct GeometryFileState {
    std::string state; ///< "missing", "unreadable", "refused by the component" or "loaded"
    std::vector<GeometryFileValue> values;
    std::vector<std::string> ignored; ///< what stands there and is not used
    std::vector<Complaint> complaints;
};

/// `calculator` is null where there is no component: then the file is only looked at.
GeometryFileState ExamineGeometryFile(const std::string& fileName, component::Calculator* calculator);

} // namespace qmv40::settings
