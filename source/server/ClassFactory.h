#pragma once

#include "platform/Automation.h"

namespace qmv40 {

/// Creates calculators. The module has one factory, created on the first request; all threads share it.
class ClassFactory final : public IClassFactory {
public:
    static ClassFactory& Instance() noexcept;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
    ULONG STDMETHODCALLTYPE AddRef() override;
    ULONG STDMETHODCALLTYPE Release() override;
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid, void** object) override;
    HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) override;

private:
    ClassFactory() = default;
    ~ClassFactory() = default;
};

} // namespace qmv40
