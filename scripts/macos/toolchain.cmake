# Builds for macOS on Linux: with zig's compiler, linker and C library for macOS, and with frameworks of which there are
# only the headers in include/ and lists of their names. QUORVANTIS_ARCH is arm64 or x86_64, QUORVANTIS_ZIG the program,
# and QUORVANTIS_PARTS the folder that scripts/check-macos prepares.

list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES QUORVANTIS_ARCH QUORVANTIS_ZIG QUORVANTIS_PARTS)

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR ${QUORVANTIS_ARCH})
set(CMAKE_SIZEOF_VOID_P 8) # the linker does not know the option by which it would be found out
string(REPLACE arm64 aarch64 architecture ${QUORVANTIS_ARCH})

set(CMAKE_C_COMPILER ${QUORVANTIS_ZIG} cc -target ${architecture}-macos.${CMAKE_OSX_DEPLOYMENT_TARGET}) # for the tests' library
set(CMAKE_CXX_COMPILER ${QUORVANTIS_ZIG} c++ -target ${architecture}-macos.${CMAKE_OSX_DEPLOYMENT_TARGET})
set(CMAKE_CXX_FLAGS_INIT "-include ${CMAKE_CURRENT_LIST_DIR}/LaterNames.h -iframework ${QUORVANTIS_PARTS}/frameworks -F${QUORVANTIS_PARTS}/frameworks -fno-sanitize=undefined -Werror -Wunguarded-availability")
set(CMAKE_EXE_LINKER_FLAGS_INIT -L${QUORVANTIS_PARTS}/lib)
foreach(language C CXX)
  set(CMAKE_${language}_ARCHIVE_CREATE "\"${QUORVANTIS_ZIG}\" ar qc <TARGET> <OBJECTS>")
  set(CMAKE_${language}_ARCHIVE_FINISH "\"${QUORVANTIS_ZIG}\" ranlib <TARGET>")
endforeach()
set(CMAKE_INSTALL_NAME_TOOL /bin/false) # nothing installed here loads what is

set(CMAKE_FIND_ROOT_PATH ${QUORVANTIS_PARTS})
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
