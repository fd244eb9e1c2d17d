#include "tools/text/Progress.h"

namespace qmv40::text {

namespace {

constexpr auto betweenRedraws = std::chrono::milliseconds(100);
constexpr auto betweenLines = std::chrono::seconds(5);

} // namespace

Progress::Progress(const Console& theConsole, std::string theTask, std::size_t theTotal)
    : console(theConsole), task(std::move(theTask)), total(theTotal), shown(Clock::now()) {}

Progress::~Progress() {
    if (console.progress) console.err << "\r\x1b[K" << std::flush;
}

void Progress::Advance(std::size_t steps) {
    done += steps;
    const auto waited = Clock::now() - shown;
    if (console.progress ? waited >= betweenRedraws : waited >= betweenLines) Show();
}

void Progress::Show() {
    shown = Clock::now();
    const std::size_t percent = done * 100 / total;
    constexpr std::size_t barLength = 40;
    const std::size_t filled = done * barLength / total;
    const std::string text = task + ": " + std::to_string(percent) + " %";
    if (console.progress) {
        console.err << '\r' << text << " [" << std::string(filled, '#') << std::string(barLength - filled, ' ') << ']';
    } else {
        console.err << text << '\n';
    }
    console.err << std::flush;
}

} // namespace qmv40::text
