#pragma once

#include "interface/IQMVCalculator.h"

#include <memory>
#include <string>
#include <string_view>

/// The parts that differ between platforms: how the component is found, and the encoding of wide texts.

namespace qmv40::bindings {

struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};
using Component = std::unique_ptr<IQMVCalculator2, Releaser>;

/// During its life the calling thread can use the component.
class ThreadReadiness {
public:
    ThreadReadiness();
    ThreadReadiness(const ThreadReadiness&) = delete;
    ThreadReadiness& operator=(const ThreadReadiness&) = delete;
    ~ThreadReadiness(); // NOLINT(performance-trivially-destructible): not on every platform

private:
    [[maybe_unused]] unsigned long apartmentsThread = 0; ///< the thread on which COM was initialised; 0: none
};

/// Throws a Refusal when the component cannot be created.
Component CreateComponent();

/// The file of the module that created `component`.
std::string FileOf(const Component& component);

/// A file name for the component, made absolute: the profile functions of Windows look for a relative one in the
/// Windows folder. Throws a Refusal for a name that is not UTF-8.
std::wstring ComponentFileName(std::u8string_view name);

std::string ToUtf8(std::wstring_view text);

} // namespace qmv40::bindings
