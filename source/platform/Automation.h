#pragma once

/// The automation types and calls that every other folder uses: HRESULT, GUID, BSTR, SAFEARRAY, IUnknown, error
/// records, class factories, object creation. On Windows it is the platform's own. Elsewhere the few types and calls
/// that the component needs are offered under the same names and with the same observable behaviour.

#ifdef _WIN32
#include "platform/windows/Automation.h"
#else
#include "platform/portable/Automation.h"
#endif
