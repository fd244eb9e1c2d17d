#include "server/Module.h"

#include "platform/ModuleState.h"

#include <atomic>

namespace {

std::atomic<long> lockCount{0};

} // namespace

void Module::AddLock() noexcept { ++lockCount; }

void Module::ReleaseLock() noexcept { --lockCount; }

bool Module::CanUnload() noexcept { return lockCount == 0 && CallsUnderWay() == 0; }
