#pragma once

#include "tests/support/SettingsFixture.h"

#include <gtest/gtest.h>

/// A test with its own settings store. The store has no key until the test stores a value.
class HeadTest : public testing::Test {
protected:
    void Store(const char* name, const char* text) { settings.SetText(name, text); }

private:
    SettingsFixture settings;
};
