#pragma once

#include "tools/model/HeadModel.h"

namespace qmv40::check {

/// The head of a saved geometry, its dimensions those of the settings in force. Only single numbers are taken from file
/// and settings; what they mean is the model's own. A value that cannot be read is thrown as the component's code.
/// `fileName`: absolute.
model::HeadModel ReadHeadModel(const wchar_t* fileName);

} // namespace qmv40::check
