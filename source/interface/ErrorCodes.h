#pragma once

#include "platform/Automation.h"

/// The component's own failure codes. The error record names the failing operation; its description is the reason, the
/// step, or "Unspecified".

inline constexpr HRESULT QMV_E_READ_FROM_FILE = static_cast<HRESULT>(0x8A000001U);
inline constexpr HRESULT QMV_E_WRITE_TO_FILE = static_cast<HRESULT>(0x8A000002U);
inline constexpr HRESULT QMV_E_NO_HEAD_GEOMETRY = static_cast<HRESULT>(0x8A000003U);
inline constexpr HRESULT QMV_E_POSITION_UNKNOWN = static_cast<HRESULT>(0x8A000004U);
inline constexpr HRESULT QMV_E_TOO_FEW_POINTS = static_cast<HRESULT>(0x8A000009U);
inline constexpr HRESULT QMV_E_FIXED_AXIS_MOVED = static_cast<HRESULT>(0x8A00000AU);
inline constexpr HRESULT QMV_E_INVALID_QUADRANT = static_cast<HRESULT>(0x8A00000BU);
/// A geometric operation cannot do its work: too few points, all on one line or in one place, or a coordinate that is
/// not finite.
inline constexpr HRESULT QMV_E_GEOMETRY_IMPOSSIBLE = static_cast<HRESULT>(0x8A00000CU);
/// A fit reached its limit of evaluations.
inline constexpr HRESULT QMV_E_GEOMETRY_LIMIT_REACHED = static_cast<HRESULT>(0x8A00000DU);
inline constexpr HRESULT QMV_E_INVALID_TARGET = static_cast<HRESULT>(0x8A00000EU);
inline constexpr HRESULT QMV_E_OBJECT_NOT_CREATED = static_cast<HRESULT>(0x80000005U);
