#include "tools/component/ComponentRuntime.h"

namespace qmv40::component {

ComponentRuntime::ComponentRuntime() = default;
ComponentRuntime::~ComponentRuntime() = default;

} // namespace qmv40::component
