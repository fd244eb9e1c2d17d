#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <utility>

/// Calls a function when its scope ends, also by an exception.
class AtTheEnd {
public:
    explicit AtTheEnd(std::function<void()> theAction) : action(std::move(theAction)) {}
    AtTheEnd(const AtTheEnd&) = delete;
    AtTheEnd& operator=(const AtTheEnd&) = delete;
    ~AtTheEnd() { action(); }

private:
    std::function<void()> action;
};

/// Runs `action` in a destructor while the stack is unwound for an exception. Checks that the exception reaches its
/// handler.
inline void WhileUnwinding(const std::function<void()>& action) {
    bool hasArrived = false;
    try {
        const AtTheEnd end(action);
        throw std::runtime_error("the host's own");
    } catch (const std::runtime_error& arrived) {
        hasArrived = true;
        EXPECT_STREQ(arrived.what(), "the host's own");
    }
    EXPECT_TRUE(hasArrived);
}
