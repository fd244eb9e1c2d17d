# The Linux library as others find it: headers, a CMake package and a pkg-config file; and the tool with all that goes
# with it.
include(CMakePackageConfigHelpers)

install(TARGETS CoQMV40Calculator EXPORT CoQMV40Calculator)
if(QMV40_TOOLS)
    # The tool finds the library beside itself, wherever both are put.
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
# What a client includes, and what that includes. No other header is public.
set(public_headers ${CMAKE_INSTALL_INCLUDEDIR}/CoQMV40Calculator)
file(GLOB interface_headers source/interface/*.h)
install(FILES ${interface_headers} DESTINATION ${public_headers}/interface)
install(FILES source/platform/Automation.h DESTINATION ${public_headers}/platform)
set(automation_headers Activation.h Automation.h ErrorInfo.h SafeArray.h Text.h Types.h Unknown.h)
list(TRANSFORM automation_headers PREPEND source/platform/portable/)
install(FILES ${automation_headers} DESTINATION ${public_headers}/platform/portable)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/CoQMV40Calculator)
install(EXPORT CoQMV40Calculator NAMESPACE CoQMV40Calculator:: DESTINATION ${package_folder}
        FILE CoQMV40CalculatorConfig.cmake)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/CoQMV40CalculatorConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/CoQMV40CalculatorConfigVersion.cmake DESTINATION ${package_folder})

# From the folder of the description up to the prefix, so that the installed tree can be moved.
file(RELATIVE_PATH prefix_from_package /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/CoQMV40Calculator.pc.in ${PROJECT_BINARY_DIR}/CoQMV40Calculator.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/CoQMV40Calculator.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
