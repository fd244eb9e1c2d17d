#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <unistd.h> // on Windows <io.h>, and _commit(_fileno(f)) for fsync(fileno(f))

struct MoveJournal {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file; // {std::fopen("run.txt", "w"), std::fclose}
    std::string plan;                                     // "from 0,0 to 45,90"

    bool Write(const char* when, int move) { // when: "before" or "after"; false: do not start the move
        std::FILE* const f = file.get();
        return f != nullptr && std::fprintf(f, "%s %d %s;\n", when, move, plan.c_str()) > 0 && std::fflush(f) == 0 &&
               fsync(fileno(f)) == 0;
    }
};
