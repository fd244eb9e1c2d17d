include_guard(GLOBAL)
include(${CMAKE_CURRENT_LIST_DIR}/HeaderOnlyLibrary.cmake)
qmv40_header_only_library(qmv40_cli11 HEADER CLI/CLI.hpp PACKAGE libcli11-dev)
