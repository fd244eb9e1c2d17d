# 32-bit Windows by mingw-w64; programs run under the Wine of a Debian root of their own (see wine32-run).
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
# Double arithmetic in the SSE2 unit, as on x64: the x87 unit keeps more digits on the way and gives other last bits.
# Callers align the stack to 4 bytes, and the vector registers want 16: functions align it anew.
set(arithmetic "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_C_FLAGS_INIT "${arithmetic}")
set(CMAKE_CXX_FLAGS_INIT "${arithmetic}")
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine32-run)
