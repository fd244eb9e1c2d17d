#include "tests/neighbours/HostSnapshot.h"

#include <cfenv>
#include <clocale>
#include <filesystem>
#include <locale>

HostSnapshot::HostSnapshot() {
    lines.push_back(std::string("C locale ") + std::setlocale(LC_ALL, nullptr));
    lines.push_back("C++ locale " + std::locale().name());
    lines.push_back("current folder " + std::filesystem::current_path().string());
    lines.push_back("rounding " + std::to_string(std::fegetround()));
    lines.push_back("floating-point flags " + std::to_string(std::fetestexcept(FE_ALL_EXCEPT)));
    AddPlatform();
}
