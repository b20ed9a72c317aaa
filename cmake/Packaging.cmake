# The Debian packages, for the release that they are built on: cpack --preset release.

cmake_host_system_information(RESULT system QUERY DISTRIB_INFO)
set(system_version "${system_ID}${system_VERSION_ID}") # "debian12"
string(REGEX REPLACE "^debian" deb system_version "${system_version}")
if(NOT system_VERSION_ID) # a release to come
  set(system_version "${system_VERSION_CODENAME}")
endif()
# Below the version itself, and so that an upgrade of the system upgrades the packages: 1.0.0~deb12, 1.0.0~deb13.
set(CPACK_DEBIAN_PACKAGE_VERSION ${PROJECT_VERSION}~${system_version})
set(CPACK_DEBIAN_RELEASE "${system_VERSION_CODENAME}")

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL programs library)
set(CPACK_SET_DESTDIR ON) # so that the prefix is the one after the package is installed
set(CPACK_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_CONTACT "Quorvantis <packages@quorvantis.invalid>") # as in the changelog; stands for an address to come
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)

set(CPACK_DEBIAN_PROGRAMS_PACKAGE_NAME quorvantis-mcp)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PROGRAMS_DESCRIPTION "\
access to the Quorvantis desktop application for AI coding agents
A Model Context Protocol server on standard input and output. It lets an AI
coding agent search the clipboard history that the Quorvantis desktop
application keeps, and use exact copies of its images.

The package also holds a program that finds out why an agent does not get
through, and a stand-in for the desktop application.")
# libsystemd, which the server opens at run time if it is there, comes with these: the stand-in is linked with it.
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SUGGESTS "wl-clipboard | xclip") # for quorvantis-standin-clipboard

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libquorvantis-dev)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "\
library for programs that share files with quorvantis-mcp
The record types and helpers of the Model Context Protocol server that gives
AI coding agents access to the Quorvantis desktop application, for programs
that work beside it, such as a prompt hook: headers, a static library, and
its descriptions for CMake and pkg-config.")
# The library uses the image decoder among the programs, of its own version.
set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS
  "quorvantis-mcp (= ${CPACK_DEBIAN_PACKAGE_VERSION}), libutf8proc-dev, nettle-dev, pkgconf")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SUGGESTS "cmake, g++")

set(CPACK_DEBIAN_FILES_FOLDER ${PROJECT_SOURCE_DIR}/packaging/debian)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/DebianFiles.cmake)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_VERBATIM_VARIABLES ON)
include(CPack)
