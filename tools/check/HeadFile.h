#pragma once

#include "persistence/HeadGeometryFile.h"
#include "tools/model/HeadModel.h"

#include <array>

namespace qmv40::check {

/// The model of the head with a saved geometry, its dimensions those of the settings in force. Only the numbers are
/// taken from the file and the settings; what they mean is the model's own.
/// `saved`: in the order of headGeometryEntries.
model::HeadModel HeadModelOf(const std::array<double, headGeometryEntries.size()>& saved);

} // namespace qmv40::check
