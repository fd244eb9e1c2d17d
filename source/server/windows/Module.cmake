# The server module, with its type library, registration script and version as resources.
enable_language(RC)
set(definition ${CMAKE_CURRENT_LIST_DIR}/CoQMV40Calculator.idl)
set(generated ${CMAKE_CURRENT_BINARY_DIR}/generated)
file(MAKE_DIRECTORY ${generated})

# widl finds the type library of the automation library in Wine's folder.
find_program(WIDL ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32-widl REQUIRED)
math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
find_path(STDOLE_FOLDER stdole2.tlb PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows
          NO_CMAKE_FIND_ROOT_PATH REQUIRED)
# widl writes the time into the type library. With a fixed time two builds are equal.
find_program(FAKETIME faketime REQUIRED)
set(widl ${CMAKE_COMMAND} -E env TZ=UTC ${FAKETIME} -f "2026-01-01 00:00:00" ${WIDL} -m${bits} -I . -L ${STDOLE_FOLDER})
# widl runs in the folder of the definition, so that its output contains no path of the machine.
add_custom_command(
    OUTPUT ${PROJECT_BINARY_DIR}/bin/CoQMV40Calculator.tlb ${PROJECT_BINARY_DIR}/bin/CoQMV40Calculator.h
    COMMAND ${widl} -t -o ${PROJECT_BINARY_DIR}/bin/CoQMV40Calculator.tlb CoQMV40Calculator.idl
    COMMAND ${widl} -h -o ${PROJECT_BINARY_DIR}/bin/CoQMV40Calculator.h CoQMV40Calculator.idl
    COMMAND ${CMAKE_COMMAND} -E copy ${definition} ${PROJECT_BINARY_DIR}/bin
    DEPENDS ${definition} ${CMAKE_CURRENT_LIST_DIR}/oaidl.idl
    WORKING_DIRECTORY ${CMAKE_CURRENT_LIST_DIR} VERBATIM)

configure_file(${CMAKE_CURRENT_LIST_DIR}/CoQMV40Calculator.rc.in ${generated}/CoQMV40Calculator.rc @ONLY)
set_source_files_properties(${generated}/CoQMV40Calculator.rc PROPERTIES
    COMPILE_OPTIONS "-I${PROJECT_BINARY_DIR}/bin;-I${CMAKE_CURRENT_LIST_DIR}"
    OBJECT_DEPENDS "${PROJECT_BINARY_DIR}/bin/CoQMV40Calculator.tlb;${CMAKE_CURRENT_LIST_DIR}/CoQMV40Calculator.rgs")

add_library(CoQMV40Calculator MODULE $<TARGET_OBJECTS:qmv40_server>
    ${generated}/CoQMV40Calculator.rc ${CMAKE_CURRENT_LIST_DIR}/CoQMV40Calculator.def)
target_link_libraries(CoQMV40Calculator PRIVATE qmv40_calculator)
set_target_properties(CoQMV40Calculator PROPERTIES PREFIX "")
# Address randomisation and no execution of data, independently of the linker's defaults. The linker's flag --tsaware
# (terminal-server awareness) is missing because it is for programs only.
target_link_options(CoQMV40Calculator PRIVATE -Wl,--dynamicbase -Wl,--nxcompat)
# The last two make two builds equal, bit for bit: otherwise the image base depends on the name of the output.
target_link_options(CoQMV40Calculator PRIVATE
    -s -static -Wl,--no-insert-timestamp -Wl,--disable-auto-image-base)
if(bits EQUAL 64)
    target_link_options(CoQMV40Calculator PRIVATE -Wl,--high-entropy-va)
endif()
if(bits EQUAL 32)
    # The names of the entry points are decorated with the size of their arguments. The plain names are exported.
    target_link_options(CoQMV40Calculator PRIVATE -Wl,--enable-stdcall-fixup)
endif()
