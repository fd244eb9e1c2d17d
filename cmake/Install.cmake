# Installs the Linux library and its C interface, each with headers, a CMake package and a pkg-config file; the Python
# package; and the tool with its files.
include(CMakePackageConfigHelpers)

install(TARGETS CoQMV40Calculator EXPORT CoQMV40Calculator)
install(TARGETS qmv40_c EXPORT qmv40)
install(FILES bindings/c/qmv40.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY bindings/python/qmv40 DESTINATION lib/python3/dist-packages COMPONENT python
        FILES_MATCHING PATTERN "*.py" PATTERN "py.typed" PATTERN "__pycache__" EXCLUDE)
install(FILES bindings/csharp/Qmv40.cs DESTINATION ${CMAKE_INSTALL_DATADIR}/qmv40/csharp)
install(DIRECTORY samples DESTINATION ${CMAKE_INSTALL_DOCDIR} PATTERN "CMakeLists.txt" EXCLUDE PATTERN "__pycache__" EXCLUDE)
if(QMV40_TOOLS)
    # The tool finds the library relative to its own folder, so that the installed tree can be moved.
    set_target_properties(qmv40 PROPERTIES INSTALL_RPATH "$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
    install(TARGETS qmv40)
    set(manual ${PROJECT_BINARY_DIR}/manual)
    install(FILES ${manual}/qmv40.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
    install(FILES ${manual}/qmv40.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME qmv40)
    install(FILES ${manual}/_qmv40 DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
    if(TARGET qmv40_view_page)
        install(FILES ${PROJECT_BINARY_DIR}/share/qmv40/view.html DESTINATION ${CMAKE_INSTALL_DATADIR}/qmv40
                OPTIONAL) # built on demand: the target qmv40_view_page
    endif()
endif()
file(GLOB documents docs/*.md docs/*.png docs/*.svg)
install(FILES CHANGELOG.md ${documents} DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY scenarios DESTINATION ${CMAKE_INSTALL_DOCDIR} FILES_MATCHING PATTERN "*.csv" PATTERN "*.reg" PATTERN "README.md")
# The headers that clients include, and those that these include. No other header is public.
set(public_headers ${CMAKE_INSTALL_INCLUDEDIR}/CoQMV40Calculator)
file(GLOB interface_headers source/interface/*.h)
install(FILES ${interface_headers} DESTINATION ${public_headers}/interface)
install(FILES source/platform/Automation.h DESTINATION ${public_headers}/platform)
set(automation_headers Activation.h Automation.h ErrorInfo.h SafeArray.h Text.h Types.h Unknown.h)
list(TRANSFORM automation_headers PREPEND source/platform/portable/)
install(FILES ${automation_headers} DESTINATION ${public_headers}/platform/portable)

# qmv40_package(<name> <template>): the CMake package of the exported targets of that name, and its pkg-config file.
function(qmv40_package name template)
    set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/${name})
    install(EXPORT ${name} NAMESPACE ${name}:: DESTINATION ${folder} FILE ${name}Config.cmake)
    write_basic_package_version_file(${PROJECT_BINARY_DIR}/${name}ConfigVersion.cmake COMPATIBILITY SameMajorVersion)
    install(FILES ${PROJECT_BINARY_DIR}/${name}ConfigVersion.cmake DESTINATION ${folder})
    # The prefix relative to the folder of the pkg-config file, so that the installed tree can be moved.
    file(RELATIVE_PATH prefix_from_package /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
    configure_file(${template} ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
qmv40_package(CoQMV40Calculator cmake/CoQMV40Calculator.pc.in)
qmv40_package(qmv40 bindings/c/qmv40.pc.in)
