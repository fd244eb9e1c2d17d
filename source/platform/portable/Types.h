#pragma once

#include <cstdint>
#include <cstring>

/// Marks a call that the shared library exports.
#define QMV_EXPORT __attribute__((visibility("default")))

/// The calling convention of interface methods. Linux has one only.
#define STDMETHODCALLTYPE

using HRESULT = std::int32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using USHORT = std::uint16_t;
using UINT = unsigned int;
using BOOL = int;
using LSTATUS = LONG;

/// One wide character: a whole code point (UTF-32).
using OLECHAR = wchar_t;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline bool operator==(REFGUID left, REFGUID right) noexcept { return std::memcmp(&left, &right, sizeof(GUID)) == 0; }

constexpr bool SUCCEEDED(HRESULT result) noexcept { return result >= 0; }
constexpr bool FAILED(HRESULT result) noexcept { return result < 0; }

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001U);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002U);
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003U);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005U);
inline constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFU);
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000EU);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057U);
inline constexpr HRESULT DISP_E_BADINDEX = static_cast<HRESULT>(0x8002000BU);
inline constexpr HRESULT DISP_E_ARRAYISLOCKED = static_cast<HRESULT>(0x8002000DU);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110U);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = static_cast<HRESULT>(0x80040111U);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = static_cast<HRESULT>(0x80040154U);
inline constexpr HRESULT CO_E_CLASSSTRING = static_cast<HRESULT>(0x800401F3U);

/// Results of the settings store: the registry's own numbers.
inline constexpr LSTATUS ERROR_SUCCESS = 0;
inline constexpr LSTATUS ERROR_FILE_NOT_FOUND = 2;
inline constexpr LSTATUS ERROR_MORE_DATA = 234;

/// Types of stored values: the registry's own numbers.
inline constexpr DWORD REG_NONE = 0;
inline constexpr DWORD REG_SZ = 1;
inline constexpr DWORD REG_EXPAND_SZ = 2;
inline constexpr DWORD REG_BINARY = 3;
inline constexpr DWORD REG_DWORD = 4;
