#pragma once

#include <cstddef>

/// Resources of the system that this process holds at the moment.
struct ProcessFigures {
    std::size_t residentBytes; ///< 0 if unknown
    std::size_t heapBytes;     ///< allocated and not freed
    long blocks;               ///< allocated by the program's own code and not freed; only differences count
    long openFiles;            ///< file descriptors or handles; 0 if unknown

    static ProcessFigures Now();
};

/// Must be called first. Switches off the platform's caches of freed memory, if there are any.
void MakeFiguresExact();
