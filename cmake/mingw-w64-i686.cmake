# 32-bit Windows by mingw-w64. Programs run under the Wine of a separate Debian root (see wine32-run).
set(CMAKE_SYSTEM_PROCESSOR i686)
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
# Double arithmetic uses SSE2, as on x64: x87 keeps more digits in intermediate results, so that the last bits would
# differ. Callers align the stack to 4 bytes, but vector registers need 16: each function aligns it again.
set(arithmetic "-msse2 -mfpmath=sse -mstackrealign")
set(CMAKE_C_FLAGS_INIT "${arithmetic}")
set(CMAKE_CXX_FLAGS_INIT "${arithmetic}")
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine32-run)
