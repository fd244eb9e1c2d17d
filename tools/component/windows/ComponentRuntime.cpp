#include "tools/component/ComponentRuntime.h"

#include "tools/component/ComponentError.h"

namespace qmv40::component {

ComponentRuntime::ComponentRuntime() {
    const HRESULT result = CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    if (FAILED(result)) throw TakeComponentError(result, "CoInitializeEx");
}

ComponentRuntime::~ComponentRuntime() { CoUninitialize(); }

} // namespace qmv40::component
