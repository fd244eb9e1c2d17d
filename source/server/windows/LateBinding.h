#pragma once

#include "server/windows/CalculatorDispatch.h"

namespace qmv40 {

/// Adds the four methods of IDispatch to the dual interface of `Base`, and IID_IDispatch to its interfaces.
template <typename Base> class LateBinding : public Base {
public:
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (count == nullptr) return E_POINTER;
        *count = 1;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID, ITypeInfo** info) override {
        return dispatch.GetTypeInfo(index, info);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* ids) override {
        return dispatch.GetIDsOfNames(reserved, names, count, ids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID method, REFIID reserved, LCID, WORD flags, DISPPARAMS* arguments,
                                     VARIANT* result, EXCEPINFO* exception, UINT* argumentError) override {
        return dispatch.Invoke(*this, method, reserved, flags, arguments, result, exception, argumentError);
    }

    /// A dual interface is an IDispatch: the pointer is the same.
    void* FindInterface(REFIID iid) noexcept {
        return Base::FindInterface(IsEqualIID(iid, IID_IDispatch) ? Base::PrimaryInterface : iid);
    }

protected:
    LateBinding() = default;
    ~LateBinding() = default;

private:
    CalculatorDispatch dispatch;
};

} // namespace qmv40
