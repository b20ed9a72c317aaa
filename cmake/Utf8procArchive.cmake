# The target quorvantis-utf8proc on macOS: an archive, never a shared library, so that the programs need nothing but the system.
# Homebrew's has been a shared library alone since 2.11; scripts/setup makes the archive in build/utf8proc.

set(madeBySetup ${PROJECT_SOURCE_DIR}/build/utf8proc)
find_library(utf8procArchive libutf8proc.a HINTS ${madeBySetup})
find_path(utf8procHeaders utf8proc.h HINTS ${madeBySetup})
if(NOT utf8procArchive OR NOT utf8procHeaders)
  message(FATAL_ERROR "libutf8proc.a or utf8proc.h is missing; a shared library will not do. "
                      "scripts/setup makes them. Others can be named: -DCMAKE_PREFIX_PATH=<folder>")
endif()

add_library(quorvantis-utf8proc STATIC IMPORTED)
set_target_properties(quorvantis-utf8proc PROPERTIES
  IMPORTED_LOCATION ${utf8procArchive}
  INTERFACE_COMPILE_DEFINITIONS UTF8PROC_STATIC
  INTERFACE_INCLUDE_DIRECTORIES ${utf8procHeaders})
