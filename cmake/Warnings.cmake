# Every warning in the project's own code is an error. (Not with clang, which builds the fuzz targets: it has other
# warnings.)
add_library(qmv40_warnings INTERFACE)
target_compile_options(qmv40_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion -Wold-style-cast
    -Woverloaded-virtual -Wformat=2 -Wimplicit-fallthrough
    # COM interfaces in the Windows headers have virtual methods and no virtual destructor.
    $<$<NOT:$<PLATFORM_ID:Windows>>:-Wnon-virtual-dtor>
    $<$<CXX_COMPILER_ID:GNU>:-Werror>
    # A cast from size_t to UINT is necessary in 64-bit builds and useless in 32-bit builds.
    $<$<AND:$<CXX_COMPILER_ID:GNU>,$<EQUAL:${CMAKE_SIZEOF_VOID_P},8>>:-Wuseless-cast>
    # GCC 12 wrongly reports overlapping copies in its own std::string concatenation.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
