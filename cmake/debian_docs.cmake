# Run by CPack when the files of the packages are in their places: each package gets what Debian
# asks for (Debian Policy, 12.1, 12.5 and 12.7).
file(READ ${CPACK_SVGREADER_SOURCE}/CHANGELOG.md changes)
if(NOT changes MATCHES "## .${CPACK_PACKAGE_VERSION}. - ([0-9-]+)")
  message(FATAL_ERROR "CHANGELOG.md has no date of version ${CPACK_PACKAGE_VERSION}")
endif()
execute_process(COMMAND env LC_ALL=C date --utc --rfc-email --date=${CMAKE_MATCH_1}
  OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  set(share ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}${CPACK_PACKAGING_INSTALL_PREFIX}/share)
  set(docs ${share}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  file(REMOVE_RECURSE ${share}/doc) # the license is the package's copyright file
  configure_file(${CPACK_SVGREADER_SOURCE}/LICENSE ${docs}/copyright COPYONLY)
  configure_file(${CPACK_SVGREADER_SOURCE}/CHANGELOG.md ${docs}/changelog COPYONLY)
  file(WRITE ${docs}/changelog.Debian
    "svgreader (${CPACK_PACKAGE_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium\n\n"
    "  * What is new stands in changelog.gz.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
  file(GLOB manuals ${share}/man/man1/*.1)
  execute_process(COMMAND gzip --best --no-name ${docs}/changelog ${docs}/changelog.Debian ${manuals}
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
