#include "platform/CallersException.h"

namespace qmv40 {

void RaiseForCallerOfPlatformsKind(HRESULT /*code*/, const void* /*returnAddress*/) {}

} // namespace qmv40
