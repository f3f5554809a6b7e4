# Runs the program that counts, and puts its counts where the compiler looks for them: beside the
# objects that it is about to make. See whole.cmake.
#
# The counts are the same with every build, and so is the library: no address and no path is random
# or the builder's own, nor is the secret of hash functions (no_entropy.c). Where the kernel does not
# let addresses be fixed, builds differ in places.
set(from CMakeFiles/counting_objects.dir)
set(to CMakeFiles/svgreader_objects.dir)
file(GLOB_RECURSE old ${from}/*.gcda ${to}/*.gcda)
if(old)
  file(REMOVE ${old})
endif()

file(GLOB samples RELATIVE ${CMAKE_CURRENT_BINARY_DIR} include/svgreader/samples/*.svg*)
set(run env -i setarch -R)
execute_process(COMMAND ${run} true RESULT_VARIABLE refused OUTPUT_QUIET ERROR_QUIET)
if(refused)
  set(run)
endif()
execute_process(COMMAND ${run} ./counting_plot ${samples} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(COPY ${from}/ DESTINATION ${to} FILES_MATCHING PATTERN *.gcda)
