#pragma once

#include "tools/model/Path.h"

namespace qmv40::motion {

using model::Path;

} // namespace qmv40::motion
