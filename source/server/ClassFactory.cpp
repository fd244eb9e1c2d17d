#include "server/ClassFactory.h"

#include "calculator/CQMVCalculator.h"
#include "platform/ModuleState.h"
#include "server/CreatableObjects.h"
#include "server/Module.h"

#include <atomic>
#include <new>

namespace qmv40 {

namespace {

std::atomic<ULONG> references{0};

/// Returns interface `iid` of a new object. If the object does not have it, the object is deleted.
template <typename Object> HRESULT Deliver(std::unique_ptr<Object> created, REFIID iid, void** object) {
    Object* const counted = created.release();
    counted->AddRef();
    const HRESULT result = counted->QueryInterface(iid, object);
    counted->Release();
    return result;
}

} // namespace

ClassFactory& ClassFactory::Instance() noexcept {
    static ClassFactory factory;
    return factory;
}

HRESULT ClassFactory::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
    AddRef();
    *object = static_cast<IClassFactory*>(this);
    return S_OK;
}

ULONG ClassFactory::AddRef() {
    Module::AddLock();
    return ++references;
}

ULONG ClassFactory::Release() {
    const ULONG left = --references;
    Module::ReleaseLock();
    return left;
}

HRESULT ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) try {
    const ModuleStateGuard moduleState; // the constructor of a calculator reads settings
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (outer == nullptr) return Deliver(std::make_unique<StandaloneObject<CQMVCalculator>>(), iid, object);
    // An aggregated object must be created as IUnknown: no other pointer controls its lifetime.
    if (iid != IID_IUnknown) return CLASS_E_NOAGGREGATION;
    return Deliver(std::make_unique<AggregatedObject<CQMVCalculator>>(outer), iid, object);
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT ClassFactory::LockServer(BOOL lock) {
    if (lock != 0) {
        Module::AddLock();
    } else {
        Module::ReleaseLock();
    }
    return S_OK;
}

} // namespace qmv40
