# Run by CPack over the files of the package: what Debian keeps elsewhere, or compressed, than an installation by hand.
set(share ${CPACK_TEMPORARY_DIRECTORY}/usr/share)
file(GLOB files ${share}/man/man1/*.1 ${share}/doc/*/CHANGELOG.md)
foreach(file ${files})
    execute_process(COMMAND gzip -9nf ${file} COMMAND_ERROR_IS_FATAL ANY)
endforeach()

if(EXISTS ${share}/zsh/site-functions)
    file(RENAME ${share}/zsh/site-functions ${share}/zsh/vendor-completions)
endif()
