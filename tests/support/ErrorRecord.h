#pragma once

#include "platform/Automation.h"

#include <optional>
#include <string>
#include <utility>

/// A copy of the error record that a failed call has set.
struct ErrorRecord {
    std::wstring source;
    std::wstring description;
    std::wstring helpFile;
    unsigned long helpContext = 0;
    GUID guid{};
};

/// Removes the thread's error record and returns it. Nothing if there is none.
inline std::optional<ErrorRecord> TakeErrorRecord() {
    IErrorInfo* info = nullptr;
    if (GetErrorInfo(0, &info) != S_OK || info == nullptr) return std::nullopt;
    const auto text = [info](HRESULT (STDMETHODCALLTYPE IErrorInfo::*getText)(BSTR*)) {
        BSTR received = nullptr;
        (info->*getText)(&received);
        const std::wstring copy(received == nullptr ? L"" : received, SysStringLen(received));
        SysFreeString(received);
        return copy;
    };
    ErrorRecord record{text(&IErrorInfo::GetSource), text(&IErrorInfo::GetDescription), text(&IErrorInfo::GetHelpFile)};
    DWORD context = 0;
    info->GetHelpContext(&context);
    record.helpContext = context;
    info->GetGUID(&record.guid);
    info->Release();
    return record;
}

/// The code of a call and its error record. An older record is removed before the call.
struct Raised {
    HRESULT code = S_OK;
    std::optional<ErrorRecord> record;
};

/// Runs `action`, which throws its failures as HRESULT.
template <class F> Raised RaisedBy(F&& action) {
    SetErrorInfo(0, nullptr);
    HRESULT code = S_OK;
    try {
        std::forward<F>(action)();
    } catch (const HRESULT thrown) {
        code = thrown;
    }
    return {code, TakeErrorRecord()};
}

/// Runs `action`, which returns its failures.
template <class F> Raised ReturnedBy(F&& action) {
    SetErrorInfo(0, nullptr);
    const HRESULT code = std::forward<F>(action)();
    return {code, TakeErrorRecord()};
}
