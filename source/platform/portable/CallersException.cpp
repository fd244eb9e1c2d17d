#include "platform/CallersException.h"

void RaiseForCallerOfPlatformsKind(HRESULT /*code*/, const void* /*returnAddress*/) {}
