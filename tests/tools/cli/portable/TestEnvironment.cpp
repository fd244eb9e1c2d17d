#include <cstdlib>
#include <gtest/gtest.h>

namespace {

/// Keeps this machine's own settings out of the tests.
class NoMachineSettings : public testing::Environment {
public:
    void SetUp() override { setenv("QMV40_SETTINGS", "/nonexistent/settings.reg", 1); }
};

[[maybe_unused]] const testing::Environment* const environment =
    testing::AddGlobalTestEnvironment(std::make_unique<NoMachineSettings>().release());

} // namespace
