#pragma once

#include "persistence/HeadGeometryFile.h"
#include "tools/model/HeadModel.h"

#include <array>

namespace qmv40::check {

/// The model of the head with a saved geometry and the dimensions of the settings in force. The component only reads
/// these numbers; the model computes with them by itself.
model::HeadModel HeadModelOf(const std::array<double, headGeometryEntries.size()>& saved);

} // namespace qmv40::check
