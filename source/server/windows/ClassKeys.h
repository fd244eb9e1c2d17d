#pragma once

#include "platform/Automation.h"

#include <string>

namespace qmv40 {

/// The class's own keys under HKEY_CLASSES_ROOT, written without the platform's registrar: some system images lack it.
/// They are those of the registration script; a test compares what both write.

/// S_OK when every key that a registration begins with can be written; else the system's code. Leaves nothing behind.
HRESULT ProbeClassKeys();
HRESULT WriteClassKeys(const std::wstring& modulePath);
/// Whether the component of the other architecture is registered too. It uses the same program names.
bool IsClassOfOtherArchitectureRegistered();
/// Removes what the script or WriteClassKeys wrote. Keys that somebody else put under the program names stay, and so do
/// the program names themselves while the other architecture uses them.
HRESULT RemoveClassKeys();

} // namespace qmv40
