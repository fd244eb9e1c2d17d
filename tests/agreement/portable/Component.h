#pragma once

#include "server/EntryPoints.h"

/// The library that the program is linked to.
using GetClassObject = HRESULT (*)(REFCLSID, REFIID, void**);
inline GetClassObject ComponentEntry() { return &DllGetClassObject; }
