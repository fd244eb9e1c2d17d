#include "server/Module.h"

#include "platform/Automation.h"
#include "platform/ModuleState.h"

#include <atomic>

namespace qmv40 {

namespace {

std::atomic<long> lockCount{0};

} // namespace

void Module::AddLock() noexcept { ++lockCount; }

void Module::ReleaseLock() noexcept { --lockCount; }

bool Module::CanUnload() noexcept { return lockCount == 0 && CallsUnderWay() == 0; }

#ifdef _WIN32
void Module::StayLoaded() noexcept {
    static std::atomic_flag done;
    if (done.test_and_set()) return;
    HMODULE module = nullptr;
    // If this fails, the module can be unloaded like any other module.
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN,
                       reinterpret_cast<LPCWSTR>(&lockCount), &module);
}
#else
void Module::StayLoaded() noexcept {}
#endif

} // namespace qmv40
