# CPack runs this for the files of the packages. It moves and compresses the files that a Debian package has in another
# place or form than an installation by hand.
set(root ${CMAKE_CURRENT_LIST_DIR}/..)
set(share ${CPACK_TEMPORARY_DIRECTORY}/Unspecified/usr/share)

if(EXISTS ${share}/zsh/site-functions)
    file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)
endif()
if(EXISTS ${share}/doc/CoQMV40Calculator)
    file(RENAME ${share}/doc/CoQMV40Calculator ${share}/doc/coqmv40calculator)
    file(RENAME ${share}/doc/coqmv40calculator/CHANGELOG.md ${share}/doc/coqmv40calculator/changelog)
endif()
file(COPY_FILE ${root}/packaging/copyright ${share}/doc/coqmv40calculator/copyright)

set(python_doc ${CPACK_TEMPORARY_DIRECTORY}/python/usr/share/doc/python3-qmv40)
file(MAKE_DIRECTORY ${python_doc})
file(COPY_FILE ${root}/packaging/copyright ${python_doc}/copyright)
file(COPY_FILE ${root}/CHANGELOG.md ${python_doc}/changelog)

file(GLOB files ${share}/man/man1/*.1 ${share}/doc/*/changelog ${python_doc}/changelog)
foreach(file ${files})
    execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
