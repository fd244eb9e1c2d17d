#include "errors/RaiseError.h"

#include "interface/Identifiers.h"
#include "platform/CallersException.h"
#include "platform/ComPointer.h"

namespace qmv40 {

namespace {

/// The setters of the record take non-const text but do not change it.
LPOLESTR AsSetterText(const wchar_t* text) noexcept { return const_cast<LPOLESTR>(text); }

/// Sets the thread's error record. Returns S_OK, or the failure code of creating or setting the record. A text that
/// cannot be stored is left out without a failure.
HRESULT SetErrorRecord(const ErrorContext& context) {
    ComPointer<ICreateErrorInfo> builder;
    const HRESULT created = CreateErrorInfo(builder.Receive());
    if (!builder) return FAILED(created) ? created : E_OUTOFMEMORY;
    builder->SetSource(AsSetterText(context.source));
    builder->SetDescription(AsSetterText(context.description));
    builder->SetHelpFile(AsSetterText(context.helpFile));
    builder->SetHelpContext(context.helpContext);
    // Always the first interface, also if a method of the second one fails: required.
    builder->SetGUID(IID_IQMVCalculator);

    ComPointer<IErrorInfo> record;
    const HRESULT asked = builder->QueryInterface(IID_IErrorInfo, record.Receive());
    return FAILED(asked) ? asked : SetErrorInfo(0, record.Get());
}

} // namespace

void RaiseError(HRESULT code, const ErrorContext& context) {
    const HRESULT recorded = SetErrorRecord(context);
    throw FAILED(recorded) ? recorded : code;
}

void RaiseError(HRESULT code, const wchar_t* source, const wchar_t* description) {
    RaiseError(code, ErrorContext{source, description, L""});
}

void ThrowRecordedCode(HRESULT code, const void* returnAddress) {
    RaiseForCallerOfPlatformsKind(code, returnAddress);
    throw code;
}

} // namespace qmv40
