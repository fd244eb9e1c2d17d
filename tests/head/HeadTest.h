#pragma once

#include "tests/support/SettingsFixture.h"

#include <gtest/gtest.h>

/// A test with a settings store of its own: no key at all until the test stores a value.
class HeadTest : public testing::Test {
protected:
    void Store(const char* name, const char* text) { settings.SetText(name, text); }

private:
    SettingsFixture settings;
};
