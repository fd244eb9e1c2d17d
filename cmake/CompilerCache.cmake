# QMV40_COMPILER_CACHE: where ccache is installed, what was compiled once is taken from its store, also in another clone: no
# file but one knows where the sources lie, and the command line has relative names.
option(QMV40_COMPILER_CACHE "Take what was compiled before from ccache, where it is installed" OFF)
if(QMV40_COMPILER_CACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    find_program(CCACHE ccache)
    if(CCACHE)
        # A precompiled header is used as it lies in the cache: its macros and its time are not looked at.
        set(cached ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
            CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
        set(CMAKE_C_COMPILER_LAUNCHER ${cached})
        set(CMAKE_CXX_COMPILER_LAUNCHER ${cached})
    endif()
endif()
