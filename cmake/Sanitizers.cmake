# QMV40_SANITIZE: a comma-separated list for -fsanitize=, the whole program built with it.
set(QMV40_SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")
if(QMV40_SANITIZE)
    add_compile_options(-fsanitize=${QMV40_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${QMV40_SANITIZE})
endif()
