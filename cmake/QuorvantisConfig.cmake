# The CMake package of the library: find_package(Quorvantis) brings the target Quorvantis::quorvantis.
if(NOT APPLE)
  include(CMakeFindDependencyMacro)
  find_dependency(PkgConfig)
  pkg_check_modules(utf8proc REQUIRED IMPORTED_TARGET libutf8proc)
  pkg_check_modules(nettle REQUIRED IMPORTED_TARGET nettle)
endif()
include(${CMAKE_CURRENT_LIST_DIR}/QuorvantisTargets.cmake)
