# The shared library: all of the server and the platform, and the parts of the other folders that they use.
add_library(CoQMV40Calculator SHARED $<TARGET_OBJECTS:qmv40_server> $<TARGET_OBJECTS:qmv40_platform>)
target_link_libraries(CoQMV40Calculator PRIVATE qmv40_calculator)
target_include_directories(CoQMV40Calculator INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/source>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/CoQMV40Calculator>)
target_compile_features(CoQMV40Calculator INTERFACE cxx_std_20)

set(exports ${CMAKE_CURRENT_LIST_DIR}/exports.map)
target_link_options(CoQMV40Calculator PRIVATE -Wl,--version-script=${exports})
set_target_properties(CoQMV40Calculator PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION 1 LINK_DEPENDS ${exports})
