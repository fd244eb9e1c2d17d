#pragma once

/// Holds one reference to an automation object for the length of a scope.
template <typename Interface> class ComPointer {
public:
    ComPointer() = default;
    ComPointer(const ComPointer&) = delete;
    ComPointer& operator=(const ComPointer&) = delete;
    ~ComPointer() { Reset(); }

    void Reset() noexcept {
        if (held != nullptr) held->Release();
        held = nullptr;
    }
    /// Where a call puts a new reference.
    Interface** Receive() noexcept {
        Reset();
        return &held;
    }
    void** ReceiveVoid() noexcept { return reinterpret_cast<void**>(Receive()); }
    Interface* Get() const noexcept { return held; }
    Interface* operator->() const noexcept { return held; }

private:
    Interface* held = nullptr;
};
