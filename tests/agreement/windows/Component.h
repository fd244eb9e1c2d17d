#pragma once

#include "platform/Automation.h"

/// The component's file beside the program, as delivered; it need not be registered. Stays loaded.
using GetClassObject = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
inline GetClassObject ComponentEntry() {
    const HMODULE component = LoadLibraryW(L"CoQMV40Calculator.dll");
    return component == nullptr ? nullptr
                                : reinterpret_cast<GetClassObject>(
                                      reinterpret_cast<void (*)()>(GetProcAddress(component, "DllGetClassObject")));
}
