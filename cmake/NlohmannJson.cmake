include_guard(GLOBAL)
include(${CMAKE_CURRENT_LIST_DIR}/HeaderOnlyLibrary.cmake)
qmv40_header_only_library(qmv40_json HEADER nlohmann/json.hpp PACKAGE nlohmann-json3-dev)
