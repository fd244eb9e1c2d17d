#pragma once

#include "platform/Automation.h"

#include <algorithm>
#include <memory>
#include <span>
#include <utility>

namespace qmv40 {

/// Holds one reference to an automation object, or none.
template <typename Interface> class ComPointer {
public:
    ComPointer() noexcept = default;
    /// Takes over a reference that the caller holds.
    explicit ComPointer(Interface* owned) noexcept : held(owned) {}
    ComPointer(const ComPointer& other) noexcept : held(other.held) {
        if (held != nullptr) held->AddRef();
    }
    ComPointer(ComPointer&& other) noexcept : held(std::exchange(other.held, nullptr)) {}
    ComPointer& operator=(ComPointer other) noexcept {
        std::swap(held, other.held);
        return *this;
    }
    ~ComPointer() {
        if (Interface* const last = Detach()) last->Release();
    }

    Interface* Get() const noexcept { return held; }
    /// Gives the reference to the caller.
    Interface* Detach() noexcept { return std::exchange(held, nullptr); }
    Interface* operator->() const noexcept { return held; }
    explicit operator bool() const noexcept { return held != nullptr; }

    /// The address for an out parameter, typed or void**.
    class Place {
    public:
        explicit Place(Interface** thePlace) noexcept : place(thePlace) {}
        operator Interface**() const noexcept { return place; }
        operator void**() const noexcept { return reinterpret_cast<void**>(place); }

    private:
        Interface** place;
    };
    /// The argument for a call that returns a reference. Releases the reference held before.
    Place Receive() noexcept {
        *this = ComPointer();
        return Place(&held);
    }

private:
    Interface* held = nullptr;
};

struct TextReleaser {
    void operator()(OLECHAR* text) const noexcept { SysFreeString(text); }
};
/// Owns a BSTR, or null.
using OwnedText = std::unique_ptr<OLECHAR, TextReleaser>;

struct ArrayReleaser {
    void operator()(SAFEARRAY* array) const noexcept { SafeArrayDestroy(array); }
};
/// Owns a safe array, or null.
using OwnedArray = std::unique_ptr<SAFEARRAY, ArrayReleaser>;

/// A safe array of one dimension, indexed from 0, with copies of the records. Null without memory.
template <typename Record> OwnedArray ArrayOf(std::span<const Record> records) noexcept {
    SAFEARRAY* made = nullptr;
    if (FAILED(SafeArrayAllocDescriptor(1, &made))) return nullptr;
    OwnedArray array(made);
    array->cbElements = sizeof(Record);
    array->rgsabound[0] = {static_cast<ULONG>(records.size()), 0};
    if (FAILED(SafeArrayAllocData(made))) return nullptr;
    std::ranges::copy(records, static_cast<Record*>(array->pvData));
    return array;
}

} // namespace qmv40
