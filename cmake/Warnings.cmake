# Every warning in the project's own code is an error. (clang, which builds the fuzz targets, has other warnings and only
# shows them.)
add_library(qmv40_warnings INTERFACE)
target_compile_options(qmv40_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion -Wold-style-cast
    -Woverloaded-virtual -Wformat=2 -Wimplicit-fallthrough
    # The Windows headers' interfaces have public destructors that are not virtual, by the object model's design.
    $<$<NOT:$<PLATFORM_ID:Windows>>:-Wnon-virtual-dtor>
    $<$<CXX_COMPILER_ID:GNU>:-Werror>
    # A cast from size_t to UINT is one on x64 and none on 32 bits.
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<EQUAL:${CMAKE_SIZEOF_VOID_P},8>>:-Wuseless-cast>
    # GCC 12 sees overlapping copies inside its own std::string concatenation where there are none.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
