#include "tests/soak/ProcessFigures.h"

#include "tests/support/FailingAllocations.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <malloc.h>
#include <unistd.h>

namespace {

#ifdef QMV40_SANITIZED
constexpr bool isWatched = true;
#else
constexpr bool isWatched = false;
#endif

} // namespace

void MakeFiguresExact() {}

ProcessFigures ProcessFigures::Now() {
    const long blocks = FailingAllocations::LiveBlocks();
    std::size_t pages = 0, residentPages = 0;
    // A sanitizer keeps freed memory, to detect its use.
    if (!isWatched) std::ifstream("/proc/self/statm") >> pages >> residentPages;
    const std::filesystem::directory_iterator open("/proc/self/fd");
    return {residentPages * static_cast<std::size_t>(::getpagesize()), ::mallinfo2().uordblks, blocks,
            std::distance(begin(open), end(open))};
}
