#include "platform/SettingsStore.h"

#include <gtest/gtest.h>

#include <vector>

/// The rights with which the registry key is opened. The linker directs the component's call to this program.

using namespace qmv40;

namespace {

struct Opening {
    HKEY root;
    DWORD options;
    REGSAM access;
};
std::vector<Opening> openings;

} // namespace

extern "C" {
extern decltype(&RegOpenKeyExA) __real___imp_RegOpenKeyExA;

static LSTATUS WINAPI Record(HKEY root, LPCSTR path, DWORD options, REGSAM access, PHKEY key) {
    openings.push_back({root, options, access});
    return __real___imp_RegOpenKeyExA(root, path, options, access, key);
}

extern decltype(&RegOpenKeyExA) __wrap___imp_RegOpenKeyExA;
decltype(&RegOpenKeyExA) __wrap___imp_RegOpenKeyExA = Record;
}

namespace {

// Accounts without administrator rights may only read the machine's settings.
TEST(SettingsAccess, RequestsReadingOnly) {
    constexpr REGSAM toRead = 0x20019; // KEY_READ
    openings.clear();
    const SettingsKey key(R"(Software\Hollbeck\VRX Software\QMV40Calculator)");
    ASSERT_EQ(openings.size(), 1U);
    EXPECT_EQ(openings[0].root, HKEY_LOCAL_MACHINE);
    EXPECT_EQ(openings[0].options, 0U);
    EXPECT_EQ(openings[0].access, toRead);
}

} // namespace
