# Every warning is an error, in our own code and nobody else's.
add_library(qmv40_warnings INTERFACE)
target_compile_options(qmv40_warnings INTERFACE
    -Wall -Wextra -Wpedantic -Werror -Wshadow -Wconversion -Wsign-conversion -Wdouble-promotion -Wold-style-cast
    -Wuseless-cast -Woverloaded-virtual -Wformat=2 -Wimplicit-fallthrough
    # The Windows headers' interfaces have public destructors that are not virtual, by the object model's design.
    $<$<NOT:$<PLATFORM_ID:Windows>>:-Wnon-virtual-dtor>
    # GCC 12 sees overlapping copies inside its own std::string concatenation where there are none.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
