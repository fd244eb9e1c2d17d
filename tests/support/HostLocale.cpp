#include "tests/support/HostLocale.h"

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace {

/// Sets the locale of the process. On Linux it is taken from the folder of locales that the build has made, because the
/// machine may not have it. Null if there is no such locale.
const char* Choose(const std::string& name) {
#ifdef QMV40_TEST_LOCALES
    const char* const folder = std::getenv("LOCPATH");
    const std::string before = folder == nullptr ? "" : folder;
    ::setenv("LOCPATH", QMV40_TEST_LOCALES, 1);
    const char* const chosen = std::setlocale(LC_ALL, name.c_str());
    folder == nullptr ? ::unsetenv("LOCPATH") : ::setenv("LOCPATH", before.c_str(), 1);
    return chosen;
#else
    return std::setlocale(LC_ALL, name.c_str());
#endif
}

} // namespace

HostLocale::HostLocale(Language language)
    : before(std::setlocale(LC_ALL, nullptr)), name(language == Language::German ? QMV40_GERMAN : QMV40_TURKISH) {
    if (Choose(name) == nullptr || std::strcmp(std::localeconv()->decimal_point, ",") != 0) {
        std::setlocale(LC_ALL, before.c_str());
        throw std::runtime_error("this machine does not have the locale " + name);
    }
}

HostLocale::~HostLocale() { std::setlocale(LC_ALL, before.c_str()); }
