# Two Debian packages of all installed files; packaging/debian builds them. (The target `package` alone packs the page
# of `qmv40 view` only if qmv40_view_page was built before.)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME coqmv40calculator)
# The owner gives the real address in the environment variable DEBEMAIL, as for Debian's own tools.
set(address maintainers@coqmv40calculator.example)
if(DEFINED ENV{DEBEMAIL})
    set(address $ENV{DEBEMAIL})
endif()
set(CPACK_PACKAGE_CONTACT "The CoQMV40Calculator maintainers <${address}>")
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/package)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DebianLayout.cmake)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Unspecified python)
set(CPACK_COMPONENT_UNSPECIFIED_DESCRIPTION
"The library with its headers, its interface for C and every language that
 calls C, the command-line tool qmv40 with its manual page and completions
 for bash and zsh, the documents, samples, and captures to try it on.")
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_NAME coqmv40calculator)
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
set(CPACK_COMPONENT_PYTHON_DESCRIPTION
"The package qmv40 for Python 3: plans the moves that turn a probe head. It
 uses the library's C interface.")
set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-qmv40)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS "python3, coqmv40calculator (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS python3-numpy)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SHLIBDEPS OFF)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/bin)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
# The installed headers include only each other and the standard library: a program needs no other package.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "g++ | clang, pkg-config | cmake")
include(CPack)
