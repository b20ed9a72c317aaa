# The fuzz targets, which scripts/fuzz runs: clang's libFuzzer makes up their input.

target_compile_options(quorvantis-options INTERFACE -fsanitize=fuzzer-no-link)
add_custom_target(quorvantis-fuzz)
foreach(target IN ITEMS json pictures records session text)
  add_executable(quorvantis-fuzz-${target} EXCLUDE_FROM_ALL fuzz/${target}.cpp)
  target_include_directories(quorvantis-fuzz-${target} PRIVATE tests)
  target_link_libraries(quorvantis-fuzz-${target} PRIVATE quorvantis quorvantis-options)
  target_link_options(quorvantis-fuzz-${target} PRIVATE -fsanitize=fuzzer)
  add_dependencies(quorvantis-fuzz quorvantis-fuzz-${target})
endforeach()

foreach(program IN ITEMS quorvantis-image-decoder quorvantis-image-decoder-heif quorvantis-image-decoder-tiff)
  get_target_property(sources ${program} SOURCES)
  list(FILTER sources INCLUDE REGEX /formats/)
  target_sources(quorvantis-fuzz-pictures PRIVATE ${sources})
endforeach()
target_link_libraries(quorvantis-fuzz-pictures PRIVATE
  quorvantis-decoding PkgConfig::codecs PkgConfig::heif PkgConfig::tiff GIF::GIF)
