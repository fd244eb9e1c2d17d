#pragma once

#include "platform/Automation.h"

/// The delivered component, loaded from the folder of the program without a registration. It stays loaded.
using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
inline GetClassObject ComponentEntry() {
    const HMODULE component = LoadLibraryW(L"CoQMV40Calculator.dll");
    return component == nullptr ? nullptr
                                : reinterpret_cast<GetClassObject>(
                                      reinterpret_cast<void (*)()>(GetProcAddress(component, "DllGetClassObject")));
}
