#include <cstdlib>
#include <gtest/gtest.h>

namespace {

/// Hides the settings of this machine from the tests.
class NoMachineSettings : public testing::Environment {
public:
    void SetUp() override { setenv("QMV40_SETTINGS", "/nonexistent/settings.reg", 1); }
};

[[maybe_unused]] const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(std::make_unique<NoMachineSettings>().release());

} // namespace
