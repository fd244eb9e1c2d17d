# QMV40_COMPILER_CACHE: if ccache is installed, it stores what the compiler writes and uses it again, also for other
# clones of the same user. Only few files are compiled with a path of the clone in a definition (one is
# tests/support/SourceFolders.cpp). ccache makes the other paths on the command line relative.
option(QMV40_COMPILER_CACHE "Take what was compiled before from ccache, where it is installed" OFF)
if(QMV40_COMPILER_CACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    find_program(CCACHE ccache)
    if(CCACHE)
        # Without pch_defines and time_macros ccache stores nothing that uses a precompiled header.
        set(cached ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
            CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
        set(CMAKE_C_COMPILER_LAUNCHER ${cached})
        set(CMAKE_CXX_COMPILER_LAUNCHER ${cached})
    endif()
endif()
