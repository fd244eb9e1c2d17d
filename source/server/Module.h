#pragma once

namespace qmv40 {

/// Counts what keeps the module loaded: live objects, references to the class factory, and locks by clients
/// (IClassFactory::LockServer). Shared by all threads.
class Module {
public:
    static void AddLock() noexcept;
    static void ReleaseLock() noexcept;

    /// True when nothing keeps the module loaded and none of its methods is running.
    static bool CanUnload() noexcept;

    /// Keeps the module loaded until the process ends, also if CanUnload is true. On Windows the C++ runtime is linked
    /// into the module. With its first exception it takes a thread-local storage index and four handles, and never
    /// releases them: a host that loads and frees the module about 1000 times would have no index left. On other
    /// systems this does nothing, because the runtime is a library of its own.
    static void StayLoaded() noexcept;
};

/// Keeps the module loaded for as long as the object that holds it lives.
class ModuleLock {
public:
    ModuleLock() noexcept { Module::AddLock(); }
    ModuleLock(const ModuleLock&) = delete;
    ModuleLock& operator=(const ModuleLock&) = delete;
    ~ModuleLock() { Module::ReleaseLock(); }
};

} // namespace qmv40
