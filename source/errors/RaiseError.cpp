#include "errors/RaiseError.h"

#include "interface/Identifiers.h"
#include "platform/CallersException.h"
#include "platform/ComPointer.h"

namespace qmv40 {

namespace {

/// The setters of the record take non-const text but do not change it.
LPOLESTR AsSetterText(const wchar_t* text) noexcept { return const_cast<LPOLESTR>(text); }

void Fill(ICreateErrorInfo& record, const wchar_t* source, const wchar_t* description, const wchar_t* helpFile,
          DWORD helpContext) {
    record.SetSource(AsSetterText(source));
    record.SetDescription(AsSetterText(description));
    record.SetHelpFile(AsSetterText(helpFile));
    record.SetHelpContext(helpContext);
    // Always the first interface, also if a method of the second one fails: required.
    record.SetGUID(IID_IQMVCalculator);
}

/// Sets the thread's error record. Returns S_OK, or the code of the step that failed.
HRESULT SetErrorRecord(const wchar_t* source, const wchar_t* description, const wchar_t* helpFile, DWORD helpContext) {
    ComPointer<ICreateErrorInfo> builder;
    const HRESULT created = CreateErrorInfo(builder.Receive());
    if (builder.Get() == nullptr) return FAILED(created) ? created : E_OUTOFMEMORY;
    Fill(*builder.Get(), source, description, helpFile, helpContext);

    ComPointer<IErrorInfo> record;
    const HRESULT asked = builder->QueryInterface(IID_IErrorInfo, record.Receive());
    if (FAILED(asked)) return asked;
    return SetErrorInfo(0, record.Get());
}

} // namespace

void RaiseError(HRESULT code, const wchar_t* source, const wchar_t* description, const wchar_t* helpFile,
                DWORD helpContext) {
    const HRESULT recorded = SetErrorRecord(source, description, helpFile, helpContext);
    throw FAILED(recorded) ? recorded : code;
}

void RaiseError(HRESULT code, const wchar_t* source, const wchar_t* description) {
    RaiseError(code, source, description, L"", 0);
}

void RaiseError(HRESULT code, const ErrorContext& context) {
    RaiseError(code, context.source, context.description, context.helpFile, context.helpContext);
}

void ThrowRecordedCode(HRESULT code, const void* returnAddress) {
    RaiseForCallerOfPlatformsKind(code, returnAddress);
    throw code;
}

} // namespace qmv40
