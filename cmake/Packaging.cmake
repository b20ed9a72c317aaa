# The Debian package: cpack --preset release.

file(STRINGS ${PROJECT_SOURCE_DIR}/packaging/debian/changelog latestChange LIMIT_COUNT 1)
if(NOT latestChange MATCHES "^quorvantis-mcp \\(${PROJECT_VERSION}\\)")
  message(FATAL_ERROR "packaging/debian/changelog does not begin with version ${PROJECT_VERSION}")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "Quorvantis <packages@quorvantis.invalid>") # as in the changelog; stands for an address to come
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "access to the Quorvantis desktop application for AI coding agents")
set(CPACK_PACKAGE_DESCRIPTION "\
A Model Context Protocol server on standard input and output. It lets an AI
coding agent search the clipboard history that the Quorvantis desktop
application keeps, and use exact copies of its images.

The package also holds a stand-in for the desktop application, and a library
for programs that share the server's files.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

# libsystemd, which the server opens at run time if it is there, comes with these: the stand-in is linked with it.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# What it takes to build with the library. Few who use the server will, so nobody gets all this unasked.
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "cmake, g++, libutf8proc-dev, nettle-dev, pkg-config")

set(CPACK_DEBIAN_FILES_FOLDER ${PROJECT_SOURCE_DIR}/packaging/debian)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DebianFiles.cmake)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
