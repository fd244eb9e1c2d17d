#pragma once

#include "platform/portable/Unknown.h"

inline constexpr DWORD CLSCTX_INPROC_SERVER = 0x1;
inline constexpr DWORD CLSCTX_ALL = 0x17; ///< in-process, local and remote servers; only in-process ones exist here

extern "C" {
/// Creates an object by class identifier. `*object` is null after a failure. REGDB_E_CLASSNOTREG when no module in the
/// process announced the class, or when `context` does not include CLSCTX_INPROC_SERVER; E_POINTER for a null `object`.
QMV_EXPORT HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** object);
/// The class identifier behind a programmatic identifier (letter case ignored); CO_E_CLASSSTRING when there is none.
QMV_EXPORT HRESULT CLSIDFromProgID(LPCOLESTR progId, CLSID* clsid);
}

namespace qmv40 {

/// One creatable class. There is no registry of classes here: a module announces its classes when it is loaded.
struct ClassAnnouncement {
    CLSID clsid;
    const OLECHAR* progId;
    const OLECHAR* versionIndependentProgId;
    HRESULT (*getClassObject)(REFCLSID clsid, REFIID iid, void** object);
    ClassAnnouncement* next = nullptr; ///< the next one in the list
};

/// Adds `announcement` to the process's list of creatable classes. It is never removed, so it must live as long as the
/// process.
void AnnounceClass(ClassAnnouncement& announcement) noexcept;

} // namespace qmv40
