# What "cmake --install" puts in place, in three components: the shared library; what a build against
# it needs; the tools. The prefix may be chosen, and moved, after the build. The target "installed"
# builds all of it and nothing else.
include(CMakePackageConfigHelpers)

set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/svgreader)
set(pc_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
add_custom_target(installed DEPENDS svgreader svgreader_shared)

install(FILES LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)

foreach(header ${public_headers})
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/svgreader/${folder}
    COMPONENT development)
endforeach()

set_target_properties(svgreader PROPERTIES EXPORT_NAME static)
set_target_properties(svgreader_shared PROPERTIES EXPORT_NAME svgreader)
install(TARGETS svgreader EXPORT svgreader-static COMPONENT development)
install(TARGETS svgreader_shared EXPORT svgreader-shared
  LIBRARY COMPONENT library NAMELINK_COMPONENT development)
foreach(kind static shared)
  install(EXPORT svgreader-${kind} NAMESPACE svgreader:: DESTINATION ${package_folder}
    COMPONENT development)
endforeach()
configure_package_config_file(cmake/svgreader-config.cmake.in svgreader-config.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(svgreader-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/svgreader-config.cmake
  ${PROJECT_BINARY_DIR}/svgreader-config-version.cmake
  DESTINATION ${package_folder} COMPONENT development)

cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX}/${pc_folder} OUTPUT_VARIABLE prefix_from_pc)
configure_file(cmake/svgreader.pc.in svgreader.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/svgreader.pc DESTINATION ${pc_folder} COMPONENT development)

# Each tool with its manual page and completions.
foreach(tool svgtree svgdraw)
  if(TARGET ${tool})
    add_dependencies(installed ${tool})
    install(TARGETS ${tool} COMPONENT tools)
    install(FILES docs/${tool}.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tools)
    install(FILES tools/completions/${tool}.bash RENAME ${tool}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT tools)
    install(FILES tools/completions/_${tool} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
      COMPONENT tools)
  endif()
endforeach()
if(TARGET svgtree)
  install(FILES docs/json.schema.json DESTINATION ${CMAKE_INSTALL_DATADIR}/svgreader
    COMPONENT tools)
endif()
