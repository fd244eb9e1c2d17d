#pragma once

#include "tests/neighbours/WholeJob.h"
#include "tests/support/SettingsFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

/// A process that contains other code than the component, and has its own settings. The settings store has texts that
/// could be read as other numbers under another locale or rounding mode.
class Neighbour : public testing::Test {
protected:
    Neighbour() {
        settings.SetText("Head Centre To Drive Cup X Offset", "-7.1234567890123456789");
        settings.SetText("Locked To Unlocked Lever Rotation", "1.3512345678901234567e2");
        settings.SetText("UNLOCKED TO LOCKED LEVER ROTATION", "138.1"); // in Turkish locales I and i are not a pair
        expected = job.Do();
    }

    SettingsFixture settings;
    TemporaryFolder folder;
    WholeJob job{folder.Path()};
    Results expected;
};
