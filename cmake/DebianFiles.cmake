# Run by CPack on the files of the package before it packs them: adds, compresses and strips as Debian wants it.
set(usr ${CPACK_TEMPORARY_DIRECTORY}/usr)
set(documents ${usr}/share/doc/${CPACK_PACKAGE_NAME})
file(COPY ${CPACK_DEBIAN_FILES_FOLDER}/changelog ${CPACK_DEBIAN_FILES_FOLDER}/copyright DESTINATION ${documents})
file(GLOB pages ${usr}/share/man/man1/*)
file(GLOB_RECURSE binaries ${usr}/*.a ${usr}/bin/* ${usr}/libexec/*)
execute_process(COMMAND gzip -9n ${documents}/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND strip --strip-unneeded --remove-section=.comment ${binaries} COMMAND_ERROR_IS_FATAL ANY)
# Whatever the umask was.
execute_process(COMMAND chmod -R u=rwX,go=rX ${CPACK_TEMPORARY_DIRECTORY} COMMAND_ERROR_IS_FATAL ANY)
