#pragma once

#include "platform/Automation.h"

#include <string>

namespace qmv40 {

/// The class's own keys under HKEY_CLASSES_ROOT, written without the platform's registrar, because some system images
/// do not have it. They are the same keys as in the registration script; a test compares both.

/// S_OK if the keys that a registration writes first can be written, else the system's code. Changes nothing.
HRESULT ProbeClassKeys();
HRESULT WriteClassKeys(const std::wstring& modulePath);
/// Whether the component of the other architecture is registered too. It uses the same program names.
bool IsClassOfOtherArchitectureRegistered();
/// Removes what the script or WriteClassKeys wrote. Keys that somebody else put under the program names stay, and so do
/// the program names themselves while the other architecture uses them.
HRESULT RemoveClassKeys();

} // namespace qmv40
