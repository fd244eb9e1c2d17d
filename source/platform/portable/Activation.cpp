#include "platform/portable/Activation.h"

#include "platform/ComPointer.h"

#include <atomic>

using namespace qmv40;

namespace {

// Constant-initialised: modules announce their classes in static constructors, which may run before those of this file.
constinit std::atomic<ClassAnnouncement*> firstAnnouncement{nullptr};

template <typename Matches> const ClassAnnouncement* FindClass(Matches matches) noexcept {
    const ClassAnnouncement* announcement = firstAnnouncement.load(std::memory_order_acquire);
    while (announcement != nullptr && !matches(*announcement)) announcement = announcement->next;
    return announcement;
}

OLECHAR Upper(OLECHAR c) noexcept { return c >= L'a' && c <= L'z' ? c - L'a' + L'A' : c; }

bool IsSameProgId(LPCOLESTR left, LPCOLESTR right) noexcept {
    if (left == nullptr || right == nullptr) return false;
    while (*left != L'\0' && Upper(*left) == Upper(*right)) ++left, ++right;
    return Upper(*left) == Upper(*right);
}

HRESULT CreateFrom(const ClassAnnouncement& announcement, IUnknown* outer, REFIID iid, void** object) {
    ComPointer<IClassFactory> factory;
    const HRESULT result = announcement.getClassObject(announcement.clsid, IID_IClassFactory, factory.Receive());
    return FAILED(result) ? result : factory->CreateInstance(outer, iid, object);
}

} // namespace

HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if ((context & CLSCTX_INPROC_SERVER) == 0) return REGDB_E_CLASSNOTREG;
    const auto isRequested = [&](const ClassAnnouncement& announcement) { return announcement.clsid == clsid; };
    const ClassAnnouncement* const announcement = FindClass(isRequested);
    if (announcement == nullptr) return REGDB_E_CLASSNOTREG;
    const HRESULT result = CreateFrom(*announcement, outer, iid, object);
    if (FAILED(result)) *object = nullptr;
    return result;
}

HRESULT CLSIDFromProgID(LPCOLESTR progId, CLSID* clsid) {
    if (progId == nullptr || clsid == nullptr) return E_INVALIDARG;
    *clsid = CLSID{};
    const auto isRequested = [&](const ClassAnnouncement& announcement) {
        return IsSameProgId(progId, announcement.progId) || IsSameProgId(progId, announcement.versionIndependentProgId);
    };
    const ClassAnnouncement* const announcement = FindClass(isRequested);
    if (announcement == nullptr) return CO_E_CLASSSTRING;
    *clsid = announcement->clsid;
    return S_OK;
}

void qmv40::AnnounceClass(ClassAnnouncement& announcement) noexcept {
    announcement.next = firstAnnouncement.load(std::memory_order_relaxed);
    while (!firstAnnouncement.compare_exchange_weak(announcement.next, &announcement, std::memory_order_release,
                                                    std::memory_order_relaxed)) {
    }
}
