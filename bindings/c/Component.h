#pragma once

#include "interface/IQMVCalculator.h"
#include "platform/ComPointer.h"

#include <string>

/// The parts that differ between platforms: how the component is found, and what a thread needs to use it.

namespace qmv40::bindings {

using Component = ComPointer<IQMVCalculator2>;

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

} // namespace qmv40::bindings
