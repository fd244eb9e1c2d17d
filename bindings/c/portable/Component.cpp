#include "bindings/c/Component.h"

#include "bindings/c/Failure.h"

#include <dlfcn.h>

#include <filesystem>

namespace qmv40::bindings {

// std::filesystem::path converts between UTF-8 and UTF-32 in the same way in every locale. Conversion between narrow
// and wide depends on the locale.

ThreadReadiness::ThreadReadiness() = default;
ThreadReadiness::~ThreadReadiness() = default;

// The dynamic linker has already found the component: first beside this library (by its run path), then in its usual
// places.
Component CreateComponent() {
    void* created = nullptr;
    const HRESULT code =
        CoCreateInstance(CLSID_QMVCalculator, nullptr, CLSCTX_INPROC_SERVER, IID_IQMVCalculator2, &created);
    if (FAILED(code)) throw Refusal{code, "the component cannot be created"};
    return Component(static_cast<IQMVCalculator2*>(created));
}

std::string FileOf(const Component& component) {
    Dl_info module{};
    const void* const classTable = *reinterpret_cast<void* const*>(component.get());
    return dladdr(classTable, &module) != 0 ? module.dli_fname : "";
}

std::wstring ComponentFileName(std::u8string_view name) {
    try {
        const std::u32string absolute = std::filesystem::absolute(name).u32string();
        return {absolute.begin(), absolute.end()};
    } catch (const std::filesystem::filesystem_error&) {
        throw Refusal{E_INVALIDARG, "the file name is not UTF-8, or there is no working folder"};
    }
}

std::string ToUtf8(std::wstring_view text) {
    const std::u8string utf8 = std::filesystem::path(std::u32string(text.begin(), text.end())).u8string();
    return {utf8.begin(), utf8.end()};
}

} // namespace qmv40::bindings
