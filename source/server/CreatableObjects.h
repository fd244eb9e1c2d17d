#pragma once

#include "platform/Automation.h"
#include "server/Module.h"

#include <memory>

#ifdef _WIN32
#include "server/windows/LateBinding.h"
#endif

namespace qmv40 {

#ifndef _WIN32
/// Here dual interfaces have no methods of IDispatch, and IID_IDispatch is not supported.
template <typename Base> using LateBinding = Base;
#endif

/// The two kinds of object of a class. They implement IUnknown: identity and lifetime. `Class` implements everything
/// else; its FindInterface(iid) returns its interfaces. An object belongs to one apartment, so its reference count is
/// not atomic. A new object has no reference. It deletes itself when its last reference is released.

/// An object that is not aggregated.
template <typename Class> class StandaloneObject final : public LateBinding<Class> {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = iid == IID_IUnknown ? this->FindInterface(Class::PrimaryInterface) : this->FindInterface(iid);
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references;
        if (left == 0) std::unique_ptr<StandaloneObject>(this).reset();
        return left;
    }

private:
    ModuleLock moduleLock;
    ULONG references = 0;
};

/// An aggregated object. The outer object is its identity; this inner IUnknown controls its lifetime.
template <typename Class> class AggregatedObject final : public IUnknown {
public:
    explicit AggregatedObject(IUnknown* theOuter) : contained(theOuter) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (iid == IID_IUnknown) {
            AddRef();
            *object = static_cast<IUnknown*>(this);
            return S_OK;
        }
        *object = contained.FindInterface(iid);
        if (*object == nullptr) return E_NOINTERFACE;
        // The reference is counted by the outer object.
        contained.AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references;
        if (left == 0) std::unique_ptr<AggregatedObject>(this).reset();
        return left;
    }

private:
    /// An object of `Class` that passes QueryInterface, AddRef and Release on to the outer object.
    class Contained final : public LateBinding<Class> {
    public:
        explicit Contained(IUnknown* theOuter) : outer(theOuter) {}
        using LateBinding<Class>::FindInterface;

        HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
            return outer->QueryInterface(iid, object);
        }
        ULONG STDMETHODCALLTYPE AddRef() override { return outer->AddRef(); }
        ULONG STDMETHODCALLTYPE Release() override { return outer->Release(); }

    private:
        IUnknown* outer; // not counted: the outer object owns this one
    };

    ModuleLock moduleLock;
    Contained contained;
    ULONG references = 0;
};

} // namespace qmv40
