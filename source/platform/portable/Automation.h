#pragma once

/// The automation types and calls, for platforms that have none of their own. The calls have C linkage, so that any
/// language can bind to them. There is no late binding here: no object has IDispatch, and a query for it gives
/// E_NOINTERFACE.

#include "platform/portable/Activation.h"
#include "platform/portable/ErrorInfo.h"
#include "platform/portable/SafeArray.h"
#include "platform/portable/Text.h"
#include "platform/portable/Types.h"
#include "platform/portable/Unknown.h"

/// What a dual interface derives from: without late binding, the plain root interface.
using DualInterfaceBase = IUnknown;
