#include "tools/component/ComponentError.h"

#include "platform/ComPointer.h"
#include "tools/text/WideText.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace qmv40::component {

namespace {

using TextGetter = HRESULT (STDMETHODCALLTYPE IErrorInfo::*)(BSTR*);

std::string TextOf(IErrorInfo& record, TextGetter getter) {
    BSTR received = nullptr;
    if (FAILED((record.*getter)(&received)) || received == nullptr) return {};
    const OwnedText text(received);
    return text::ToUtf8({text.get(), SysStringLen(text.get())});
}

struct KnownFailure {
    HRESULT code;
    const char* remedy;
};

constexpr std::array knownFailures{
    KnownFailure{QMV_E_READ_FROM_FILE, "The geometry file lacks a value. Compute it afresh with `qmv40 geometry`."},
    KnownFailure{QMV_E_WRITE_TO_FILE, "Check that the folder exists and that you may write there."},
    KnownFailure{QMV_E_TOO_FEW_POINTS,
                 "Capture at least four points for each axis; seven over the whole range are good."},
    KnownFailure{QMV_E_FIXED_AXIS_MOVED, "Every A-axis point needs the very same BPosition, every B-axis point the "
                                         "very same APosition. Were the two files exchanged?"},
    KnownFailure{QMV_E_GEOMETRY_IMPOSSIBLE, "The points do not determine the shape: too few different ones, or all on "
                                            "one line or in one place."},
    KnownFailure{QMV_E_GEOMETRY_LIMIT_REACHED, "The fit found no end: look for mistyped points."},
    KnownFailure{QMV_E_INVALID_TARGET, "A goes from 0 to 90 and B from -180 to 180, both in steps of 15 degrees."},
    KnownFailure{REGDB_E_CLASSNOTREG,
                 "The component is not registered on this machine. As administrator, in its folder: "
                 "regsvr32 CoQMV40Calculator.dll"},
};

} // namespace

ComponentError TakeComponentError(HRESULT code, const char* withoutRecord) {
    ComPointer<IErrorInfo> record;
    if (GetErrorInfo(0, record.Receive()) != S_OK || !record) {
        return {code, withoutRecord, "no description is available"};
    }
    return {code, TextOf(*record.Get(), &IErrorInfo::GetSource), TextOf(*record.Get(), &IErrorInfo::GetDescription)};
}

std::string CodeText(HRESULT code) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string text = "0x";
    for (int shift = 28; shift >= 0; shift -= 4) text += digits[(static_cast<std::uint32_t>(code) >> shift) & 0xFU];
    return text;
}

text::Json ErrorJson(const ComponentError& error) {
    text::Json members{{"code", CodeText(error.code)}, {"source", error.source}, {"description", error.description}};
    if (error.plan != 0) members["plan"] = error.plan;
    return {{"error", members}};
}

std::string Remedy(HRESULT code) {
    const auto* const known = std::ranges::find(knownFailures, code, &KnownFailure::code);
    return known == knownFailures.end() ? "" : known->remedy;
}

} // namespace qmv40::component
