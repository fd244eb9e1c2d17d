# QMV40_SANITIZE: a comma-separated list of sanitizers. All programs and libraries are built with them.
set(QMV40_SANITIZE "" CACHE STRING "Sanitizers to build with, for example address,undefined")
if(QMV40_SANITIZE)
    add_compile_options(-fsanitize=${QMV40_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${QMV40_SANITIZE})
endif()
