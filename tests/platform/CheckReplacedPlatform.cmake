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
set(declared "${WORK}/declared.xml") # the parser library reads it
file(WRITE "${declared}" "<!DOCTYPE a [<!ENTITY e 'value'>]>\n<a b='&e;'/>\n")

foreach(trace ALWAYS NEVER)
  execute_process(
    COMMAND "${CMAKE_COMMAND}" -S "${SOURCE}" -B "${WORK}/build" -G "${GENERATOR}" -DCMAKE_BUILD_TYPE=Debug
            -DCMAKE_CXX_FLAGS_DEBUG=-O0 -DXMLPLUGIN_BUILD_TESTS=OFF -DXMLPLUGIN_BUILD_HOST=OFF -DXMLPLUGIN_INSTALL=OFF
            "-DXMLPLUGIN_PLATFORM_DIR=${SOURCE}/tests/platform/minimal" "-DXMLPLUGIN_TRACE=${trace}"
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build" --target XmlPlugin minimal_host
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(
    COMMAND "${WORK}/build/bin/minimal_host" "${WORK}/build/bin/XmlPlugin.so" "${document}" "${archive}" "${declared}"
            ${trace}
    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
