#include "errors/QMVObjectHelper.h"

#include "errors/RaiseError.h"

using namespace qmv40;

HRESULT QMVObjectHelper::CREATE_OBJECT(REFCLSID clsid, REFIID iid, void** object) {
    const HRESULT result = CoCreateInstance(clsid, nullptr, CLSCTX_ALL, iid, object);
    if (FAILED(result)) {
        if (object != nullptr) *object = nullptr;
        RaiseError(QMV_E_OBJECT_NOT_CREATED, L"QMVObjectHelper::CREATE_OBJECT", L"Failed to create object");
    }
    return result;
}
