#pragma once

namespace qmv40::component {

/// While it lives, the component can be created on this thread: on Windows COM is initialised for it.
class ComponentRuntime {
public:
    ComponentRuntime();
    ComponentRuntime(const ComponentRuntime&) = delete;
    ComponentRuntime& operator=(const ComponentRuntime&) = delete;
    ~ComponentRuntime(); // NOLINT(performance-trivially-destructible): not on every platform
};

} // namespace qmv40::component
