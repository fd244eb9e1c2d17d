#pragma once

#include "platform/Automation.h"

/// The module's exported entry points. The Windows headers declare them already.
#ifndef _WIN32
extern "C" {
/// The class factory of `clsid`; CLASS_E_CLASSNOTAVAILABLE for a class that is not the module's.
QMV_EXPORT HRESULT DllGetClassObject(REFCLSID clsid, REFIID iid, void** object);
/// S_OK if the module may be unloaded, S_FALSE while any part of it is in use.
QMV_EXPORT HRESULT DllCanUnloadNow();
}
#endif
