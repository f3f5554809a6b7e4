# Tests, benchmarks and fuzz targets; all but the tests are built on demand only.
enable_testing()

file(GLOB_RECURSE test_sources CONFIGURE_DEPENDS tests/*_test.cpp)
file(GLOB test_support CONFIGURE_DEPENDS tests/support/*.cpp)
set(value_printer tools/value_text.cpp tools/utf8.cpp) # svgtree's is also that of the tests
file(GLOB fuzz_sources CONFIGURE_DEPENDS fuzz/*.cpp)
find_package(GTest)
if(GTest_FOUND)
  add_executable(svgreader_tests
    ${test_sources} ${test_support} ${value_printer} ${fuzz_sources} fuzz/support/fuzz.cpp)
  target_link_libraries(svgreader_tests PRIVATE
    svgreader flags EXPAT::EXPAT ZLIB::ZLIB PkgConfig::NETTLE GTest::gtest_main)
  target_compile_options(svgreader_tests PRIVATE -Wno-dangling-else) # the macros of GoogleTest
  # Only this file knows where the checkout lies, so that the others compile alike everywhere.
  set_source_files_properties(tests/support/documents.cpp PROPERTIES
    COMPILE_DEFINITIONS SVGREADER_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  if(TARGET svgtree)
    add_dependencies(svgreader_tests svgtree)
  endif()

  include(GoogleTest)
  gtest_discover_tests(svgreader_tests DISCOVERY_MODE PRE_TEST
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR} PROPERTIES TIMEOUT 600)
endif()

# Scripts that run the tools as a user would.
file(GLOB test_scripts CONFIGURE_DEPENDS tests/tools/*_test.py)
find_package(Python3 QUIET COMPONENTS Interpreter)
if(TARGET svgtree AND Python3_FOUND)
  foreach(script ${test_scripts})
    cmake_path(GET script STEM name)
    if(TARGET svgdraw OR NOT name MATCHES "^svgdraw")
      add_test(NAME ${name} COMMAND Python3::Interpreter ${script} $<TARGET_FILE:svgtree>
               WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
    endif()
  endforeach()
endif()

# svgreader_bench prints the table of ./dev bench, path_bench measures the path parser alone.
find_package(LibXml2 QUIET)
find_package(pugixml QUIET)
if(LIBXML2_FOUND AND pugixml_FOUND)
  add_executable(svgreader_bench EXCLUDE_FROM_ALL
    bench/bench.cpp bench/contenders.cpp bench/families.cpp)
  target_link_libraries(svgreader_bench PRIVATE
    svgreader flags EXPAT::EXPAT LibXml2::LibXml2 pugixml::pugixml)
endif()
find_package(benchmark QUIET)
if(benchmark_FOUND)
  add_executable(path_bench EXCLUDE_FROM_ALL bench/path_bench.cpp)
  target_link_libraries(path_bench PRIVATE svgreader flags benchmark::benchmark_main)
endif()

if(SVGREADER_FUZZ)
  add_library(fuzz_support OBJECT EXCLUDE_FROM_ALL fuzz/support/fuzz.cpp
    tests/support/accounting_core.cpp tests/support/reader.cpp tests/support/scene.cpp
    tests/support/scene_list.cpp tests/support/whole.cpp ${value_printer})
  target_link_libraries(fuzz_support PUBLIC
    svgreader flags EXPAT::EXPAT ZLIB::ZLIB PkgConfig::NETTLE GTest::gtest)
  target_compile_options(fuzz_support PUBLIC -Wno-dangling-else)
  add_custom_target(fuzz_targets)
  foreach(source ${fuzz_sources})
    cmake_path(GET source STEM target)
    add_executable(${target} EXCLUDE_FROM_ALL ${source} fuzz/support/main.cpp)
    target_compile_definitions(${target} PRIVATE FUZZ_TARGET=fuzz_${target})
    target_link_libraries(${target} PRIVATE fuzz_support)
    target_link_options(${target} PRIVATE -fsanitize=fuzzer)
    add_dependencies(fuzz_targets ${target})
  endforeach()
endif()

# ---- what is installed ---------------------------------------------------------------------------

# Instrumented libraries export more, and need an instrumented host.
if(NOT (SVGREADER_SANITIZE OR SVGREADER_COVERAGE OR SVGREADER_FUZZ))
  list(TRANSFORM public_headers PREPEND ${PROJECT_SOURCE_DIR}/ OUTPUT_VARIABLE header_paths)
  add_test(NAME install.exports COMMAND ${PROJECT_SOURCE_DIR}/tests/install/exports.sh
    $<TARGET_FILE:svgreader_shared> $<TARGET_FILE:svgreader> ${header_paths})
  add_test(NAME install.examples COMMAND ${PROJECT_SOURCE_DIR}/tests/install/examples.sh
    ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR})
  set_tests_properties(install.exports install.examples PROPERTIES
    ENVIRONMENT
    "CC=${CMAKE_C_COMPILER};CXX=${CMAKE_CXX_COMPILER};CMAKE_GENERATOR=${CMAKE_GENERATOR}" TIMEOUT 120)
endif()
