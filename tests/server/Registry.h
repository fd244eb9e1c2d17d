#pragma once

#include "platform/Automation.h"

#include <map>
#include <string>

/// Reads and writes keys below HKEY_CLASSES_ROOT. Names of keys are relative to it.

inline constexpr const wchar_t* classKey = LR"(CLSID\{5B2E9C41-7A3D-4F6E-9B12-3C8D4E7F1A26})";
inline constexpr const wchar_t* typeLibraryKey = LR"(TypeLib\{8E4F2A17-3B6C-4D59-A2E8-71F0C3B9D645})";
inline constexpr const wchar_t* programKey = L"QMV.QMVCalculator.1";
inline constexpr const wchar_t* versionIndependentProgramKey = L"QMV.QMVCalculator";
inline constexpr const wchar_t* firstInterfaceKey = LR"(Interface\{2C7D91E3-6F4A-4B28-8D35-9E1A7C0B4F52})";
inline constexpr const wchar_t* secondInterfaceKey = LR"(Interface\{6A3E5F82-1D9B-4C47-B6E0-58F2D7A1C93E})";

/// The text values of each key by their names; a key's default value has an empty name.
using RegistryTexts = std::map<std::wstring, std::map<std::wstring, std::wstring>>;

/// `key` and all keys below it; nothing if there is no such key.
RegistryTexts TextsBelow(const std::wstring& key);
/// Everything that registering the component writes.
RegistryTexts RegisteredTexts();

bool KeyExists(const std::wstring& key);
void SetText(const std::wstring& key, const std::wstring& name, const std::wstring& text);
void RemoveKey(const std::wstring& key);
/// Removes all keys of RegisteredTexts.
void RemoveRegistration();
