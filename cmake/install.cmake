# What "cmake --install" puts in place: headers, both libraries, the CMake package, the file for
# pkg-config, the tools and their man pages. The prefix may be chosen, and moved, after the build.
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/svgreader)
set(pc_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

foreach(header ${public_headers})
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/svgreader/${folder})
endforeach()

set_target_properties(svgreader PROPERTIES EXPORT_NAME static)
set_target_properties(svgreader_shared PROPERTIES EXPORT_NAME svgreader)
install(TARGETS svgreader EXPORT svgreader-static)
install(TARGETS svgreader_shared EXPORT svgreader-shared)
foreach(kind static shared)
  install(EXPORT svgreader-${kind} NAMESPACE svgreader:: DESTINATION ${package_folder})
endforeach()
configure_package_config_file(cmake/svgreader-config.cmake.in svgreader-config.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(svgreader-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/svgreader-config.cmake
  ${PROJECT_BINARY_DIR}/svgreader-config-version.cmake DESTINATION ${package_folder})

cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${pc_folder} OUTPUT_VARIABLE prefix_from_pc)
configure_file(cmake/svgreader.pc.in svgreader.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/svgreader.pc DESTINATION ${pc_folder})

if(TARGET svgtree)
  install(TARGETS svgtree)
  install(FILES docs/svgtree.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES tools/completions/svgtree.bash RENAME svgtree
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES tools/completions/_svgtree DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endif()
if(TARGET svgdraw)
  install(TARGETS svgdraw)
  install(FILES docs/svgdraw.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
endif()

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
