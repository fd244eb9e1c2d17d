#include "server/EntryPoints.h"

#include "interface/Identifiers.h"
#include "server/ClassFactory.h"
#include "server/Module.h"

using namespace qmv40;

extern "C" HRESULT STDMETHODCALLTYPE DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (clsid != CLSID_QMVCalculator) return CLASS_E_CLASSNOTAVAILABLE;
    Module::StayLoaded();
    return ClassFactory::Instance().QueryInterface(iid, object);
}

extern "C" HRESULT STDMETHODCALLTYPE DllCanUnloadNow() { return Module::CanUnload() ? S_OK : S_FALSE; }
