#pragma once

/// The automation vocabulary where the platform has none. C linkage, so that any language can bind to the calls that
/// the shared library exports. There is no late binding here: nothing offers IDispatch, and asking for it gives
/// E_NOINTERFACE.

#include "platform/portable/Activation.h"
#include "platform/portable/ErrorInfo.h"
#include "platform/portable/SafeArray.h"
#include "platform/portable/Text.h"
#include "platform/portable/Types.h"
#include "platform/portable/Unknown.h"

/// What a dual interface derives from: without late binding, the plain root interface.
using DualInterfaceBase = IUnknown;
