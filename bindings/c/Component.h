#pragma once

#include "interface/IQMVCalculator.h"

#include <memory>
#include <string>
#include <string_view>

/// What the platforms do differently: how the component is found, and what a wide text is.

namespace qmv40::bindings {

struct Releaser {
    void operator()(IUnknown* object) const { object->Release(); }
};
using Component = std::unique_ptr<IQMVCalculator2, Releaser>;

/// What the calling thread needs before it can use the component, for as long as this lives.
class ThreadReadiness {
public:
    ThreadReadiness();
    ThreadReadiness(const ThreadReadiness&) = delete;
    ThreadReadiness& operator=(const ThreadReadiness&) = delete;
    ~ThreadReadiness(); // NOLINT(performance-trivially-destructible): not on every platform

private:
    [[maybe_unused]] unsigned long apartmentsThread = 0; ///< 0: there is nothing to take back
};

/// Throws a Refusal when the component cannot be had.
Component CreateComponent();

/// The file of the module that `component` is made of.
std::string FileOf(const Component& component);

/// A file name as the component takes it, made absolute: to the platform's profile functions a relative one would mean
/// a folder of the system. Throws a Refusal for a name that is not UTF-8.
std::wstring ComponentFileName(std::u8string_view name);

std::string ToUtf8(std::wstring_view text);

} // namespace qmv40::bindings
