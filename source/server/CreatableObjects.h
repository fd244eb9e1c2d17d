#pragma once

#include "platform/Automation.h"
#include "server/LateBinding.h"
#include "server/Module.h"

#include <memory>

namespace qmv40 {

/// The two ways in which a class is served. `Class` gives its interfaces by FindInterface(iid) and everything but
/// identity and lifetime, which are here. An object lives in one apartment, so its count is a plain one. Objects are
/// born without a reference and delete themselves with the last.

/// An object of its own.
template <typename Class> class StandaloneObject final : public LateBinding<Class> {
public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object =
            IsEqualIID(iid, IID_IUnknown) ? this->FindInterface(Class::PrimaryInterface) : this->FindInterface(iid);
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

/// An object inside another: the outer one is its identity, this inner unknown its lifetime.
template <typename Class> class AggregatedObject final : public IUnknown {
public:
    explicit AggregatedObject(IUnknown* theOuter) : contained(theOuter) {}

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (IsEqualIID(iid, IID_IUnknown)) {
            AddRef();
            *object = static_cast<IUnknown*>(this);
            return S_OK;
        }
        *object = contained.FindInterface(iid);
        if (*object == nullptr) return E_NOINTERFACE;
        // The interface belongs to the outer object from here on.
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
    /// The class itself, with the outer object as its identity.
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
