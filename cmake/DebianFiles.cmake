# Run by CPack on the files of the packages before it packs them: adds, compresses and strips as Debian wants it.
set(changelog ${CPACK_DEBIAN_FILES_FOLDER}/changelog)
if("$ENV{SOURCE_DATE_EPOCH}" STREQUAL "")
  execute_process(COMMAND dpkg-parsechangelog -l ${changelog} -S Timestamp OUTPUT_VARIABLE date
                  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(ENV{SOURCE_DATE_EPOCH} ${date}) # the date of all files in the packages
endif()
file(READ ${changelog} changes)
string(REGEX REPLACE "^quorvantis-mcp [^;]*" "quorvantis-mcp (${CPACK_DEBIAN_PACKAGE_VERSION}) ${CPACK_DEBIAN_RELEASE}"
       changes "${changes}")

function(complete component package)
  set(usr ${CPACK_TEMPORARY_DIRECTORY}/${component}/usr)
  set(documents ${usr}/share/doc/${package})
  file(COPY ${CPACK_DEBIAN_FILES_FOLDER}/copyright DESTINATION ${documents})
  file(WRITE ${documents}/changelog "${changes}")
  file(GLOB pages ${usr}/share/man/man1/*)
  file(GLOB_RECURSE binaries ${usr}/*.a ${usr}/bin/* ${usr}/libexec/*)
  list(FILTER binaries EXCLUDE REGEX "-clipboard$") # a script
  execute_process(COMMAND gzip -9n ${documents}/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND strip --strip-unneeded --remove-section=.comment --enable-deterministic-archives ${binaries}
                  COMMAND_ERROR_IS_FATAL ANY)
  # Whatever the umask was.
  execute_process(COMMAND chmod -R u=rwX,go=rX ${usr} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
complete(programs ${CPACK_DEBIAN_PROGRAMS_PACKAGE_NAME})
complete(library ${CPACK_DEBIAN_LIBRARY_PACKAGE_NAME})
