#pragma once

namespace qmv40 {

/// What keeps the module loaded: live objects, references to the class factory and locks that clients asked for.
/// Shared by all threads.
class Module {
public:
    static void AddLock() noexcept;
    static void ReleaseLock() noexcept;

    /// True when nothing keeps the module loaded and none of its methods is running.
    static bool CanUnload() noexcept;

    /// Keeps the module in the process until it ends, whatever the answers to CanUnload are. The C++ runtime inside the
    /// module takes a place for thread data and four handles of the process with its first exception and never gives
    /// them back: a host that loads and frees the module again and again would run out of places after 1000 times. Only
    /// on Windows: elsewhere the runtime is a library of its own.
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
