#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <utility>

/// Does something when its scope is left, whichever way.
class AtTheEnd {
public:
    explicit AtTheEnd(std::function<void()> theAction) : action(std::move(theAction)) {}
    AtTheEnd(const AtTheEnd&) = delete;
    AtTheEnd& operator=(const AtTheEnd&) = delete;
    ~AtTheEnd() { action(); }

private:
    std::function<void()> action;
};

/// Makes `action` run while an exception is in flight, from a destructor that runs because of it, and checks that this
/// exception arrives unharmed.
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
