#include "platform/portable/ErrorInfo.h"

#include "platform/ComPointer.h"

#include <atomic>
#include <new>

using namespace qmv40;

namespace {

/// A text of a record. It is null until it is set.
class RecordText {
public:
    HRESULT Set(LPCOLESTR text) noexcept {
        value.reset(SysAllocString(text));
        return text == nullptr || value != nullptr ? S_OK : E_OUTOFMEMORY;
    }

    HRESULT Get(BSTR* copy) const noexcept {
        if (copy == nullptr) return E_INVALIDARG;
        *copy = SysAllocString(value.get());
        return value == nullptr || *copy != nullptr ? S_OK : E_OUTOFMEMORY;
    }

private:
    OwnedText value;
};

class ErrorRecord final : public IErrorInfo, public ICreateErrorInfo {
public:
    ErrorRecord() = default;
    ErrorRecord(const ErrorRecord&) = delete;
    ErrorRecord& operator=(const ErrorRecord&) = delete;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        // COM identity: IUnknown is always the same pointer.
        if (iid == IID_IUnknown || iid == IID_ICreateErrorInfo) *object = static_cast<ICreateErrorInfo*>(this);
        if (iid == IID_IErrorInfo) *object = static_cast<IErrorInfo*>(this);
        if (*object == nullptr) return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }

    ULONG STDMETHODCALLTYPE AddRef() override { return references.fetch_add(1) + 1; }

    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = references.fetch_sub(1) - 1;
        if (left == 0) std::unique_ptr<ErrorRecord>(this).reset();
        return left;
    }

    HRESULT STDMETHODCALLTYPE GetGUID(GUID* result) override { return Give(guid, result); }
    HRESULT STDMETHODCALLTYPE GetSource(BSTR* result) override { return source.Get(result); }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* result) override { return description.Get(result); }
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* result) override { return helpFile.Get(result); }
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* result) override { return Give(helpContext, result); }

    HRESULT STDMETHODCALLTYPE SetGUID(REFGUID value) override {
        guid = value;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE SetSource(LPOLESTR value) override { return source.Set(value); }
    HRESULT STDMETHODCALLTYPE SetDescription(LPOLESTR value) override { return description.Set(value); }
    HRESULT STDMETHODCALLTYPE SetHelpFile(LPOLESTR value) override { return helpFile.Set(value); }
    HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD value) override {
        helpContext = value;
        return S_OK;
    }

private:
    // Lifetime belongs to Release.
    friend std::default_delete<ErrorRecord>;
    ~ErrorRecord() = default;

    template <typename Value> static HRESULT Give(const Value& value, Value* result) noexcept {
        if (result == nullptr) return E_INVALIDARG;
        *result = value;
        return S_OK;
    }

    std::atomic<ULONG> references{1};
    GUID guid{};
    RecordText source;
    RecordText description;
    RecordText helpFile;
    DWORD helpContext = 0;
};

thread_local ComPointer<IErrorInfo> threadsRecord;

} // namespace

HRESULT CreateErrorInfo(ICreateErrorInfo** record) noexcept {
    if (record == nullptr) return E_INVALIDARG;
    *record = new (std::nothrow) ErrorRecord; // its first reference is the caller's
    return *record == nullptr ? E_OUTOFMEMORY : S_OK;
}

HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* record) noexcept {
    if (reserved != 0) return E_INVALIDARG;
    if (record != nullptr) record->AddRef();
    // The new record is stored before the previous one is released: that release may call this function again.
    threadsRecord = ComPointer(record);
    return S_OK;
}

HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** record) noexcept {
    if (reserved != 0 || record == nullptr) return E_INVALIDARG;
    *record = threadsRecord.Detach();
    return *record == nullptr ? S_FALSE : S_OK;
}
