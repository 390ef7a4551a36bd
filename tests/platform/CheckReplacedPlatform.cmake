# Another folder takes the place of src/platform: the whole plug-in, the module included, must build on it unchanged,
# load and answer. The folder is tests/platform/minimal, which has the operations that the plug-in relies on and no
# other. Its trace library cannot tell whether somebody listens, so the plug-in is built to write every record, and then
# none.
# Needs: SOURCE (the project), WORK (a folder of the test's own), GENERATOR.
cmake_minimum_required(VERSION 3.25)

set(document "${SOURCE}/examples/servers.xml")
set(archive "${WORK}/servers.zip") # for the minimal platform a file with this ending is an archive of itself
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
file(COPY_FILE "${document}" "${archive}")

execute_process(
  COMMAND "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}/build" -G "${GENERATOR}" -DXMLPLUGIN_BUILD_TESTS=OFF
          -DXMLPLUGIN_BUILD_HOST=OFF "-DXMLPLUGIN_PLATFORM_DIR=${WORK}/platform"
  COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)

set(object "src/plugins/XmlPlugin/CMakeFiles/xmlengine_objects.dir/common/boundary/XmlValue.cpp.o")
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build" --target "${object}" COMMAND_ERROR_IS_FATAL ANY)

file(APPEND "${WORK}/platform/pluginsdk/Expression.h" "\n#error this header is in use\n")
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build" --target "${object}" RESULT_VARIABLE result
                OUTPUT_QUIET ERROR_QUIET)
if(result EQUAL 0)
  message(FATAL_ERROR "the plug-in does not use the headers of XMLPLUGIN_PLATFORM_DIR")
endif()
