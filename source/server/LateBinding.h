#pragma once

#include "platform/Automation.h"

/// Late binding for a dual interface, where the platform has it.
#ifdef _WIN32

/// The four dispatch entries. They report plainly that there is no late binding, and nothing answers IID_IDispatch:
/// callers bind to the interfaces.
template <typename Base> class LateBinding : public Base {
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (count == nullptr) return E_POINTER;
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
        return E_NOTIMPL;
    }

protected:
    LateBinding() = default;
    ~LateBinding() = default;
};

#else

/// There are no dispatch entries to fill here.
template <typename Base> using LateBinding = Base;

#endif
