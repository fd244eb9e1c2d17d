#pragma once

#include "interface/IQMVCalculator.h"
#include "server/EntryPoints.h"

#include <utility>

/// Holds one reference on an interface.
template <class T> class ComPointer {
public:
    ComPointer() noexcept = default;
    /// Takes over a reference that the caller holds.
    explicit ComPointer(T* owned) noexcept : pointer(owned) {}
    ComPointer(const ComPointer& other) noexcept : pointer(other.pointer) {
        if (pointer != nullptr) pointer->AddRef();
    }
    ComPointer(ComPointer&& other) noexcept : pointer(std::exchange(other.pointer, nullptr)) {}
    ComPointer& operator=(ComPointer other) noexcept {
        std::swap(pointer, other.pointer);
        return *this;
    }
    ~ComPointer() {
        if (pointer != nullptr) pointer->Release();
    }

    T* operator->() const noexcept { return pointer; }
    T* Get() const noexcept { return pointer; }
    explicit operator bool() const noexcept { return pointer != nullptr; }

    /// Argument for a call that hands out a reference through a void**; what was held before is let go of.
    class Receiver {
    public:
        explicit Receiver(ComPointer& theOwner) noexcept : owner(theOwner) {}
        Receiver(const Receiver&) = delete;
        Receiver& operator=(const Receiver&) = delete;
        ~Receiver() { owner = ComPointer(static_cast<T*>(received)); }
        operator void**() noexcept { return &received; }

    private:
        ComPointer& owner;
        void* received = nullptr;
    };
    Receiver Receive() noexcept { return Receiver(*this); }

private:
    T* pointer = nullptr;
};

/// The class factory of the calculator, through the component's own entry point: nothing need be registered.
inline ComPointer<IClassFactory> CalculatorFactory() {
    ComPointer<IClassFactory> factory;
    DllGetClassObject(CLSID_QMVCalculator, IID_IClassFactory, factory.Receive());
    return factory;
}

/// A fresh calculator; null when it could not be created.
inline ComPointer<IQMVCalculator2> CreateCalculator() {
    ComPointer<IQMVCalculator2> calculator;
    const ComPointer<IClassFactory> factory = CalculatorFactory();
    if (factory) factory->CreateInstance(nullptr, IID_IQMVCalculator2, calculator.Receive());
    return calculator;
}
