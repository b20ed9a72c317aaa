# The tests. Two words of the test preset's environment are for macOS: the address sanitizer would find containers
# overflowing that pass between the tests and a GoogleTest compiled without it (ASAN_OPTIONS), and each program would say
# at its start which part of the system's allocator it cannot use (MallocNanoZone).

include(GoogleTest)
find_package(GTest REQUIRED)

add_executable(quorvantis-tests
  tests/ArrowsTest.cpp
  tests/MessagesTest.cpp
  tests/broker/BrokerClientTest.cpp
  tests/cli/StartUpTest.cpp
  tests/doctor/DoctorTest.cpp
  tests/harness/ChildProcess.cpp
  tests/harness/Transcript.cpp
  tests/imaging/ImageReferencesTest.cpp
  tests/integration/CredentialValidatorTest.cpp
  tests/integration/HelperPathsTest.cpp
  tests/integration/ProcessRunnerTest.cpp
  tests/mcp/AttachmentIdentitiesTest.cpp
  tests/mcp/HistoryTest.cpp
  tests/mcp/HostileInputTest.cpp
  tests/mcp/ToolsTest.cpp
  tests/mcp/TranscriptTest.cpp
  tests/platform/${platform}/SystemTest.cpp
  tests/standin/StandinTest.cpp
  tests/state/MCPClientSessionTest.cpp
  tests/state/PromptHookObservationTest.cpp
  tests/state/RecordsTest.cpp
  tests/support/HelperFailureTest.cpp
  tests/support/HelperIOTest.cpp
  tests/json/JSONDocumentTest.cpp
  tests/json/JSONFilesTest.cpp
  tests/json/JSONWriterTest.cpp
  tests/support/PathsTest.cpp)
if(NOT APPLE)
  target_sources(quorvantis-tests PRIVATE
    tests/faults/BrokerFaultsTest.cpp
    tests/faults/SecretsTest.cpp
    tests/faults/SystemCallsTest.cpp
    tests/platform/linux/ClientSessionNotificationTest.cpp)
endif()
add_dependencies(quorvantis-tests quorvantis-doctor quorvantis-mcp quorvantis-standin)
if(NOT APPLE)
  add_dependencies(quorvantis-tests quorvantis-image-decoder quorvantis-image-decoder-heif quorvantis-image-decoder-tiff)
endif()
target_include_directories(quorvantis-tests PRIVATE tests)
target_compile_definitions(quorvantis-tests PRIVATE
  QUORVANTIS_DOCTOR="$<TARGET_FILE:quorvantis-doctor>"
  QUORVANTIS_HOSTILE_PICTURES="${PROJECT_SOURCE_DIR}/tests/hostile"
  QUORVANTIS_PICTURES="${PROJECT_SOURCE_DIR}/tests/pictures"
  QUORVANTIS_SERVER="$<TARGET_FILE:quorvantis-mcp>"
  QUORVANTIS_SOURCE="${PROJECT_SOURCE_DIR}/src"
  QUORVANTIS_STANDIN="$<TARGET_FILE:quorvantis-standin>"
  QUORVANTIS_TRANSCRIPTS="${PROJECT_SOURCE_DIR}/tests/transcripts")
target_link_libraries(quorvantis-tests PRIVATE quorvantis quorvantis-options GTest::gtest_main)
gtest_discover_tests(quorvantis-tests DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120)

# The programs and the library as they are installed, and a program of somebody else's built with them.
if(QUORVANTIS_SANITIZE)
  set(package_flags -fsanitize=address,undefined)
endif()
get_target_property(boost_folders Boost::headers INTERFACE_INCLUDE_DIRECTORIES)
list(GET boost_folders 0 boost_folder)
add_test(NAME installed-package COMMAND ${PROJECT_SOURCE_DIR}/tests/package/run
         ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR} ${CMAKE_CXX_COMPILER}
         "${CMAKE_CXX_FLAGS} -I${boost_folder} ${package_flags}")

# Copies under displays of its own, of what is installed.
add_test(NAME standin-clipboard COMMAND ${PROJECT_SOURCE_DIR}/tests/standin/clipboard $<TARGET_FILE:quorvantis-standin>)
set_tests_properties(standin-clipboard PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 180)

# A session of the official client library; "npm ci --ignore-scripts" in tests/sdk comes first.
find_program(NODE node)
add_test(NAME sdk-session COMMAND ${NODE} ${PROJECT_SOURCE_DIR}/tests/sdk/session.test.mjs)
set_tests_properties(sdk-session PROPERTIES ENVIRONMENT QUORVANTIS_MCP=$<TARGET_FILE:quorvantis-mcp> TIMEOUT 180)

# ---- the tests of images -------------------------------------------------------------------------------------------

if(NOT APPLE)
  add_executable(quorvantis-imaging-tests
    tests/decoder/HostilePicturesTest.cpp
    tests/decoder/MatrixConversionTest.cpp
    tests/decoder/OrientationTest.cpp
    tests/decoder/SandboxTest.cpp
    tests/imaging/AttachmentIdentityTest.cpp
    tests/imaging/PicturesTest.cpp
    tests/imaging/PixelHasherTest.cpp)
  target_include_directories(quorvantis-imaging-tests PRIVATE tests)
  target_compile_definitions(quorvantis-imaging-tests PRIVATE
    QUORVANTIS_DECODER="$<TARGET_FILE:quorvantis-image-decoder>"
    QUORVANTIS_HOSTILE_PICTURES="${PROJECT_SOURCE_DIR}/tests/hostile"
    QUORVANTIS_PICTURES="${PROJECT_SOURCE_DIR}/tests/pictures")
  # libheif is asked for its version.
  target_link_libraries(quorvantis-imaging-tests PRIVATE
    quorvantis-decoding quorvantis-options PkgConfig::heif GTest::gtest_main)
  add_dependencies(quorvantis-imaging-tests quorvantis-image-decoder quorvantis-image-decoder-heif
                                            quorvantis-image-decoder-tiff)
  gtest_discover_tests(quorvantis-imaging-tests PROPERTIES TIMEOUT 120)

  # A program whose decoder, beside it, is a script. One test for CTest: it moves the script.
  set(decoder_folder ${PROJECT_BINARY_DIR}/decoder-process/bin)
  add_executable(quorvantis-decoder-process-tests tests/imaging/DecoderProcessTest.cpp)
  target_include_directories(quorvantis-decoder-process-tests PRIVATE tests)
  target_link_libraries(quorvantis-decoder-process-tests PRIVATE quorvantis quorvantis-options GTest::gtest_main)
  set_target_properties(quorvantis-decoder-process-tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${decoder_folder})
  configure_file(tests/imaging/decoder.sh ${decoder_folder}/quorvantis-image-decoder COPYONLY)
  add_test(NAME decoder-process COMMAND quorvantis-decoder-process-tests)
  set_tests_properties(decoder-process PROPERTIES TIMEOUT 120)
endif()

# ---- the tests of the sources for macOS, over a stand-in for its frameworks ------------------------------------------

if(NOT APPLE)
  add_executable(quorvantis-frameworks-tests
    src/imaging/macos/DecodingBatch.cpp
    src/platform/macos/ClientSessionNotification.cpp
    src/platform/macos/FileSystem.cpp
    src/platform/macos/Process.cpp
    tests/macos/FrameworksTest.cpp
    tests/macos/fake/Frameworks.cpp
    tests/platform/macos/SystemTest.cpp
    tools/standin/macos/SessionSignals.cpp)
  target_include_directories(quorvantis-frameworks-tests PRIVATE
    tests tests/macos tests/macos/fake/include scripts/macos/include tools/standin)
  target_compile_definitions(quorvantis-frameworks-tests PRIVATE st_ctimespec=st_ctim)
  # These objects come before those of the library, which it then does not use.
  target_link_libraries(quorvantis-frameworks-tests PRIVATE
    quorvantis quorvantis-options quorvantis-utf8proc GTest::gtest_main)
  gtest_discover_tests(quorvantis-frameworks-tests DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 120)
endif()
