# The library optimized as a whole: all objects become one, which hosts of the static library link as
# any other.

# A first build counts how often each branch is taken while the plotter among the examples reads and
# walks the samples; the compiler lays out the second by these counts.
set(counts)
if(NOT CMAKE_CROSSCOMPILING)
  add_objects(counting_objects -fprofile-generate)
  file(CONFIGURE OUTPUT no_entropy.c CONTENT [[
#include <string.h>
int getentropy(void *bytes, size_t size) {
  memset(bytes, 1, size);
  return 0;
}
]])
  add_executable(counting_plot examples/plot.c ${PROJECT_BINARY_DIR}/no_entropy.c)
  target_include_directories(counting_plot PRIVATE ${PROJECT_BINARY_DIR}/include)
  target_link_options(counting_plot PRIVATE -fprofile-generate)
  target_link_libraries(counting_plot PRIVATE
    counting_objects EXPAT::EXPAT ZLIB::ZLIB PkgConfig::NETTLE m)
  set_target_properties(counting_plot PROPERTIES LINKER_LANGUAGE CXX)
  file(GLOB samples CONFIGURE_DEPENDS samples/*.svg*)
  add_custom_command(OUTPUT counted
    COMMAND ${CMAKE_COMMAND} -P ${PROJECT_SOURCE_DIR}/cmake/count.cmake
    COMMAND ${CMAKE_COMMAND} -E touch counted
    DEPENDS counting_plot ${samples} cmake/count.cmake
    COMMENT "Counting branches" VERBATIM)
  add_custom_target(counting DEPENDS counted)
  set(counts -fprofile-use -fprofile-partial-training -fprofile-correction -Wno-missing-profile)
endif()

add_objects(svgreader_objects -flto ${counts})
if(TARGET counting)
  add_dependencies(svgreader_objects counting)
endif()
separate_arguments(link_flags NATIVE_COMMAND "${CMAKE_CXX_FLAGS} ${CMAKE_CXX_FLAGS_RELEASE}")
set(objects ${PROJECT_BINARY_DIR}/svgreader.o)
add_custom_command(OUTPUT ${objects}
  COMMAND ${CMAKE_CXX_COMPILER} ${link_flags} -fPIC -flto=auto -r -flinker-output=nolto-rel
          $<TARGET_OBJECTS:svgreader_objects> -o ${objects}
  DEPENDS svgreader_objects $<TARGET_OBJECTS:svgreader_objects>
  COMMENT "Optimizing the library" COMMAND_EXPAND_LISTS VERBATIM)
