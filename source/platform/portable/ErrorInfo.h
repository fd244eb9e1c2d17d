#pragma once

#include "platform/portable/Text.h"
#include "platform/portable/Unknown.h"

/// Each thread has one error record: it describes the last failure.

/// Reads an error record. Every text is a new BSTR that the caller frees.
struct IErrorInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetGUID(GUID* guid) = 0; ///< of the failing method's interface
    virtual HRESULT STDMETHODCALLTYPE GetSource(BSTR* source) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDescription(BSTR* description) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* helpFile) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* helpContext) = 0;

protected:
    ~IErrorInfo() = default;
};

/// Fills an error record. The same object has IErrorInfo.
struct ICreateErrorInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE SetGUID(REFGUID guid) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSource(LPOLESTR source) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDescription(LPOLESTR description) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpFile(LPOLESTR helpFile) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD helpContext) = 0;

protected:
    ~ICreateErrorInfo() = default;
};

/// Tells whether the methods of an interface set the error record when they fail.
struct ISupportErrorInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) = 0;

protected:
    ~ISupportErrorInfo() = default;
};

inline constexpr IID IID_IErrorInfo{0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
inline constexpr IID IID_ICreateErrorInfo{0x22F03340, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
inline constexpr IID IID_ISupportErrorInfo{
    0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};

extern "C" {
/// An empty record. E_OUTOFMEMORY when there is no memory for it.
QMV_EXPORT HRESULT CreateErrorInfo(ICreateErrorInfo** record) noexcept;
/// Makes `record` the calling thread's record; null removes the thread's record. `reserved` is 0.
QMV_EXPORT HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* record) noexcept;
/// Removes the calling thread's record and returns it: S_OK, or S_FALSE and null when there is none.
QMV_EXPORT HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** record) noexcept;
}
