#pragma once

#include <cstddef>

/// Resources of the system that this process holds at the moment.
struct ProcessFigures {
    std::size_t residentBytes; ///< 0 if unknown
    std::size_t heapBytes;     ///< allocated and not given back
    long blocks;               ///< the same in blocks of the program's own code
    long openFiles;            ///< file descriptors or handles; 0 if unknown

    static ProcessFigures Now();
};

/// To be called first: switches off what keeps freed memory for later, where there is such a thing.
void MakeFiguresExact();
