include_guard(GLOBAL)

# An interface target for an installed header-only library, for native and cross builds alike.
# The compiler reaches the library's folder through a link in the build tree: a cross compiler must not search
# /usr/include, because the other headers there belong to this machine's system.
#   qmv40_header_only_library(<target> HEADER <folder/file> PACKAGE <Debian package>)
function(qmv40_header_only_library target)
    cmake_parse_arguments(PARSE_ARGV 1 library "" "HEADER;PACKAGE" "")
    find_path(${target}_INCLUDE_DIR ${library_HEADER} PATHS /usr/include /usr/local/include NO_CMAKE_FIND_ROOT_PATH)
    if(NOT ${target}_INCLUDE_DIR)
        message(FATAL_ERROR "${library_HEADER} was not found: install ${library_PACKAGE}")
    endif()
    get_filename_component(folder ${library_HEADER} DIRECTORY)
    set(links ${PROJECT_BINARY_DIR}/header-only/${target})
    file(MAKE_DIRECTORY ${links})
    file(CREATE_LINK ${${target}_INCLUDE_DIR}/${folder} ${links}/${folder} SYMBOLIC)
    add_library(${target} INTERFACE)
    target_include_directories(${target} SYSTEM INTERFACE ${links})
endfunction()
