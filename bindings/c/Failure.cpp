#include "bindings/c/Failure.h"

#include "bindings/c/Component.h"

#include <new>

namespace qmv40::bindings {

namespace {

using TextGetter = HRESULT (STDMETHODCALLTYPE IErrorInfo::*)(BSTR*);

struct TextReleaser {
    void operator()(OLECHAR* text) const { SysFreeString(text); }
};

std::string TextOf(IErrorInfo& record, TextGetter getter) {
    BSTR text = nullptr;
    if (FAILED((record.*getter)(&text)) || text == nullptr) return {};
    const std::unique_ptr<OLECHAR, TextReleaser> owned(text);
    return ToUtf8({text, SysStringLen(text)});
}

} // namespace

void KeepComponentFailure(Failure& failure, HRESULT code, const char* call) {
    failure = {code, {}, {}};
    IErrorInfo* found = nullptr;
    const bool hasRecord = GetErrorInfo(0, &found) == S_OK && found != nullptr;
    const std::unique_ptr<IErrorInfo, Releaser> record(hasRecord ? found : nullptr);
    try {
        failure.source = record ? TextOf(*record, &IErrorInfo::GetSource) : call;
        failure.description = record ? TextOf(*record, &IErrorInfo::GetDescription) : "no description is available";
    } catch (const std::bad_alloc&) { // NOLINT(bugprone-empty-catch): without memory only the code is kept
    }
}

void KeepRefusal(Failure& failure, const Refusal& refusal, const char* call) {
    failure = {refusal.code, {}, {}};
    try {
        failure.source = call;
        failure.description = refusal.description;
    } catch (const std::bad_alloc&) { // NOLINT(bugprone-empty-catch): without memory only the code is kept
    }
}

} // namespace qmv40::bindings
