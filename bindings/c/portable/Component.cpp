#include "bindings/c/Component.h"

#include "bindings/c/Failure.h"

#include <dlfcn.h>

namespace qmv40::bindings {

ThreadReadiness::ThreadReadiness() = default;
ThreadReadiness::~ThreadReadiness() = default;

// The dynamic linker has already found the component: first beside this library (by its run path), then in its usual
// places.
Component CreateComponent() {
    Component created;
    const HRESULT code =
        CoCreateInstance(CLSID_QMVCalculator, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator2, created.Receive());
    if (FAILED(code)) throw Refusal{code, "the component cannot be created"};
    return created;
}

std::string FileOf(const Component& component) {
    Dl_info module{};
    const void* const classTable = *reinterpret_cast<void* const*>(component.Get());
    return dladdr(classTable, &module) != 0 ? module.dli_fname : "";
}

} // namespace qmv40::bindings
