# Another folder takes the place of src/platform: the plug-in's sources that face the host must compile against its
# headers unchanged. The folder is a copy with one operation more; that its headers are the ones in use shows in a
# second compilation, which a broken header must fail.
# Needs: SOURCE (the project), WORK (a folder of the test's own), GENERATOR.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
file(COPY "${SOURCE}/src/platform/" DESTINATION "${WORK}/platform")
file(READ "${WORK}/platform/pluginsdk/Expression.h" header)
string(REPLACE "class PLUGINSDK_API ScalarOperand : public ScalarExpression\n{\npublic:"
               "class PLUGINSDK_API ScalarOperand : public ScalarExpression\n{\npublic:\n    int ofTheOtherHost() const { return 1; }"
               changed "${header}")
if(changed STREQUAL header)
  message(FATAL_ERROR "the copied header could not be changed")
endif()
file(WRITE "${WORK}/platform/pluginsdk/Expression.h" "${changed}")

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
