#include "tools/selfcheck/SelfCheckReport.h"

#include "tools/text/Failures.h"
#include "tools/text/Json.h"
#include "tools/text/Numbers.h"
#include "tools/text/Table.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace qmv40::selfcheck {

namespace {

std::string InPowersOfTen(double value) {
    std::array<char, 32> buffer{};
    const auto result =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::scientific, 1);
    return {buffer.data(), result.ptr};
}

/// With enough digits to tell the build's number from a wrong one.
std::string NumbersText(const std::vector<double>& numbers, double tolerance) {
    constexpr double fine = 1e-13;
    constexpr int decimals = 6;
    constexpr int fineDecimals = 15;
    std::string text;
    for (const double number : numbers) {
        text += (text.empty() ? "" : ", ") + text::FixedText(number, tolerance < fine ? fineDecimals : decimals);
    }
    return numbers.size() == 1 ? text : "(" + text + ")";
}

void PrintGroup(const SelfCheckGroup& group, const text::Console& console) {
    using enum text::Table::Align;
    console.out << console.Strong(group.title) << "\n  " << group.source << '\n';
    text::Table table(
        {{"", Left}, {"", Left}, {"expected", Right}, {"got", Right}, {"difference", Right}, {"unit", Left}});
    for (const SelfCheck& check : group.checks) {
        table.AddRow({check.IsPassed() ? "ok" : "OFF", check.what, NumbersText(check.expected, check.tolerance),
                      NumbersText(check.got, check.tolerance), InPowersOfTen(check.Difference()), check.unit});
    }
    table.Print(console);
    console.out << '\n';
}

void Print(const std::vector<SelfCheckGroup>& groups, std::size_t count, std::size_t off,
           const text::Console& console) {
    for (const SelfCheckGroup& group : groups) PrintGroup(group, console);
    console.out << console.Strong(off == 0 ? "All " + std::to_string(count) + " checks passed."
                                           : std::to_string(off) + " of " + std::to_string(count) + " checks are OFF.")
                << '\n';
    if (off != 0) console.out << "Do not move a machine by what this build says.\n";
}

text::Json ReportJson(const std::vector<SelfCheckGroup>& groups, bool isPassed) {
    text::Json checks = text::Json::Array();
    for (const SelfCheckGroup& group : groups) {
        for (const SelfCheck& check : group.checks) {
            checks.PushBack({{"group", group.title},
                             {"source", group.source},
                             {"what", check.what},
                             {"expected", check.expected},
                             {"got", check.got},
                             {"difference", check.Difference()},
                             {"tolerance", check.tolerance},
                             {"unit", check.unit},
                             {"passed", check.IsPassed()}});
        }
    }
    return {{"passed", isPassed}, {"checks", checks}};
}

} // namespace

bool ReportSelfChecks(const std::vector<SelfCheckGroup>& groups, bool asJson, const text::Console& console) {
    std::size_t count = 0;
    std::size_t off = 0;
    for (const SelfCheckGroup& group : groups) {
        count += group.checks.size();
        off += static_cast<std::size_t>(
            std::ranges::count_if(group.checks, [](const SelfCheck& check) { return !check.IsPassed(); }));
    }
    if (asJson) {
        text::PrintDocument("selfcheck", ReportJson(groups, off == 0), console.out);
    } else {
        Print(groups, count, off, console);
    }
    return off == 0;
}

} // namespace qmv40::selfcheck
