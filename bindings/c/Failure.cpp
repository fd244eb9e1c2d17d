#include "bindings/c/Failure.h"

#include "platform/ComPointer.h"

#include <filesystem>
#include <new>

namespace qmv40::bindings {

namespace {

using TextGetter = HRESULT (STDMETHODCALLTYPE IErrorInfo::*)(BSTR*);

std::string TextOf(IErrorInfo& record, TextGetter getter) {
    BSTR text = nullptr;
    if (FAILED((record.*getter)(&text)) || text == nullptr) return {};
    const OwnedText owned(text);
    return ToUtf8({text, SysStringLen(text)});
}

} // namespace

std::string ToUtf8(std::wstring_view text) {
    const std::basic_string<WideUnit> units(text.begin(), text.end());
    const std::u8string utf8 = std::filesystem::path(units).u8string();
    return {utf8.begin(), utf8.end()};
}

void KeepComponentFailure(Failure& failure, HRESULT code, const char* call) {
    failure = {code, {}, {}};
    ComPointer<IErrorInfo> record;
    GetErrorInfo(0, record.Receive());
    try {
        failure.source = record ? TextOf(*record.Get(), &IErrorInfo::GetSource) : call;
        failure.description =
            record ? TextOf(*record.Get(), &IErrorInfo::GetDescription) : "no description is available";
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
