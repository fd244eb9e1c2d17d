#pragma once

#include "platform/Automation.h"

#include <string>

namespace qmv40 {

/// The keys of the class under HKEY_CLASSES_ROOT, written without the platform's registrar, because some system images
/// do not have one. They are the same keys as in the registration script; a test compares both.

/// S_OK if the outermost keys of a registration can be written, else the system's code. Changes nothing.
HRESULT ProbeClassKeys();
HRESULT WriteClassKeys(const std::wstring& modulePath);
/// Whether the component of the other architecture is registered too. It uses the same program names.
bool IsClassOfOtherArchitectureRegistered();
/// Removes what the script or WriteClassKeys wrote. Keys that another program wrote below the program names stay, and
/// so do the program names while the other architecture uses them.
HRESULT RemoveClassKeys();

} // namespace qmv40
