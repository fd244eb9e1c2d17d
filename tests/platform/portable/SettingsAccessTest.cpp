#include "platform/SettingsStore.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <poll.h>
#include <sys/select.h>
#include <unistd.h>

/// Settings are read without waiting. The linker directs all waiting calls to this program.

using namespace qmv40;

namespace {

int waits = 0;

} // namespace

extern "C" {
int __wrap_nanosleep(const timespec* /*time*/, timespec* /*rest*/) { return ++waits, 0; }
int __wrap_clock_nanosleep(clockid_t /*clock*/, int /*flags*/, const timespec* /*time*/, timespec* /*rest*/) {
    return ++waits, 0;
}
int __wrap_usleep(useconds_t /*time*/) { return ++waits, 0; }
int __wrap_poll(pollfd* /*files*/, nfds_t /*count*/, int /*time*/) { return ++waits, 0; }
int __wrap_select(int /*count*/, fd_set* /*in*/, fd_set* /*out*/, fd_set* /*errors*/, timeval* /*time*/) {
    return ++waits, 0;
}
}

namespace {

// A plan reads the settings several times. If a read waited, the caller's window would not react.
TEST(SettingsAccess, NeverWaitsForAFileToBeFilled) {
    const TemporaryFolder folder;
    const std::filesystem::path file = folder.Path("settings.reg");
    ::setenv("QMV40_SETTINGS", file.c_str(), 1);
    for (const char* const content : {"", "\n", "Windows Registry Editor Version 5.00\r\n", "REGED"}) {
        std::ofstream(file, std::ios::trunc) << content;
        const SettingsKey key(R"(Software\Hollbeck\VRX Software\QMV40Calculator)");
        EXPECT_FALSE(key.IsOpen()) << content;
    }
    std::filesystem::remove(file);
    EXPECT_FALSE(SettingsKey(R"(Software\Hollbeck\VRX Software\QMV40Calculator)").IsOpen());
    ::unsetenv("QMV40_SETTINGS");
    EXPECT_EQ(waits, 0);
}

} // namespace
