#include "platform/CallersException.h"

#include <array>
#include <cstdint>

// The linker's name for the first byte of this module.
extern "C" const IMAGE_DOS_HEADER __ImageBase; // NOLINT(bugprone-reserved-identifier)

namespace qmv40 {

namespace {

// The data that the platform's compilers generate for `throw` of a long. Addresses in it have 32 bits. In 64-bit code
// they are relative to the module's first byte, whose address is the last argument of the exception. In 32-bit code
// they are absolute.
#ifdef _WIN64
std::uintptr_t AddressBase() { return reinterpret_cast<std::uintptr_t>(&__ImageBase); }
constexpr DWORD argumentCount = 4;
#else
std::uintptr_t AddressBase() { return 0; }
constexpr DWORD argumentCount = 3;
#endif

constexpr DWORD exceptionCode = 0xE06D7363;        // a C++ exception: 0xE0 and the letters "msc" in ASCII
constexpr ULONG_PTR exceptionVersion = 0x19930520; // of the layout of the structures below

std::uint32_t ImageAddress(const void* thing) {
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(thing) - AddressBase());
}

struct TypeDescriptor {
    const void* virtualTable;
    const void* decoratedName;
    std::array<char, 3> name;
};
struct CatchableType {
    std::uint32_t properties;
    std::uint32_t descriptor;                   // an address, as are `type` and `types` below
    std::array<std::int32_t, 3> distanceToBase; // -1 as the second number: no virtual base
    std::uint32_t size;
    std::uint32_t copyFunction;
};
struct CatchableTypes {
    std::uint32_t count;
    std::uint32_t type;
};
struct ThrowDescription {
    std::uint32_t attributes;
    std::uint32_t destructor;
    std::uint32_t forwardHandler;
    std::uint32_t types;
};

constexpr std::uint32_t simpleType = 1; // copied byte by byte
const TypeDescriptor typeLong{nullptr, nullptr, {'.', 'J', '\0'}};
const CatchableType catchableLong{simpleType, ImageAddress(&typeLong), {0, -1, 0}, sizeof(long), 0};
const CatchableTypes catchableTypes{1, ImageAddress(&catchableLong)};
const ThrowDescription throwLong{0, 0, 0, ImageAddress(&catchableTypes)};

/// 32-bit and 64-bit images have the linker's version at the same offset.
bool IsLinkedByGnuLd(HMODULE module) {
    constexpr BYTE versionOfGnuLd = 2; // the platform's linkers and lld write 6 to 14
    const auto* const image = reinterpret_cast<const BYTE*>(module);
    const auto& start = *reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto& headers = *reinterpret_cast<const IMAGE_NT_HEADERS*>(image + start.e_lfanew);
    return headers.OptionalHeader.MajorLinkerVersion == versionOfGnuLd;
}

/// Whether `code` catches the platform's kind of exception. Code outside all images was generated at run time (by .NET,
/// for example): it catches that kind.
bool CatchesPlatformsKind(const void* code) {
    constexpr DWORD byAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE module = nullptr;
    const bool isInImage = GetModuleHandleExW(byAddress, static_cast<LPCWSTR>(code), &module) != 0;
    return !isInImage || !IsLinkedByGnuLd(module);
}

} // namespace

void RaiseForCallerOfPlatformsKind(HRESULT code, const void* returnAddress) {
    if (!CatchesPlatformsKind(returnAddress)) return;
    const std::array<ULONG_PTR, 4> arguments{exceptionVersion, reinterpret_cast<ULONG_PTR>(&code),
                                             reinterpret_cast<ULONG_PTR>(&throwLong), AddressBase()};
    RaiseException(exceptionCode, EXCEPTION_NONCONTINUABLE, argumentCount, arguments.data());
}

} // namespace qmv40
