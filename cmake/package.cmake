# Debian packages: "cpack -G DEB" in the folder of a build whose prefix is /usr; see ./dev package.
# Who makes packages is their maintainer, under the name that Debian's tools take from the environment.
set(CPACK_PACKAGE_CONTACT "The authors of svgreader <svgreader@packages.invalid>")
if(DEFINED ENV{DEBFULLNAME} AND DEFINED ENV{DEBEMAIL})
  set(CPACK_PACKAGE_CONTACT "$ENV{DEBFULLNAME} <$ENV{DEBEMAIL}>")
endif()
set(CPACK_PACKAGE_NAME svgreader)
set(CPACK_PACKAGE_VENDOR svgreader)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL library development)
if(SVGREADER_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL tools)
endif()
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})

set(CPACK_SVGREADER_SOURCE ${PROJECT_SOURCE_DIR})
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian_docs.cmake)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
  GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME libsvgreader${interface_version})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(about "svgreader reads SVG 1.1 drawings, plain or compressed, into a tree of typed
values, resolves it for programs that draw, convert, index or check drawings,
and reports what is wrong in them.

This package has")
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "${about} the shared library.")
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/triggers)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libsvgreader-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "libsvgreader${interface_version} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}), libexpat1-dev, zlib1g-dev, nettle-dev")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "${about} what programs that use it are built with:
headers, static library, CMake package and file for pkg-config.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME svgreader-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION graphics)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION "${about} the command-line tools svgtree, which prints,
checks and questions drawings, and svgdraw, which draws them.")

include(CPack)
