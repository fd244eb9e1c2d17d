#pragma once

namespace qmv40::component {

/// Keeps the component usable on this thread while it lives.
class ComponentRuntime {
public:
    ComponentRuntime();
    ComponentRuntime(const ComponentRuntime&) = delete;
    ComponentRuntime& operator=(const ComponentRuntime&) = delete;
    ~ComponentRuntime(); // NOLINT(performance-trivially-destructible): not on every platform
};

} // namespace qmv40::component
