# A function is added as docs/design.md says, and asked.
# Needs: SOURCE, COPIED, RECIPE, WORK, GENERATOR, COMPILER, FLAGS, SANITIZE, ENGINE, TOOL, PLATFORM.
cmake_minimum_required(VERSION 3.25)

file(REMOVE_RECURSE "${WORK}")
foreach(path IN LISTS COPIED)
  get_filename_component(folder "${WORK}/tree/${path}" DIRECTORY)
  file(COPY "${SOURCE}/${path}" DESTINATION "${folder}")
endforeach()
set(_patch "${CMAKE_CURRENT_LIST_DIR}/${RECIPE}.patch")
find_program(PATCH patch REQUIRED)
execute_process(COMMAND "${PATCH}" -p0 --no-backup-if-mismatch -i "${_patch}" WORKING_DIRECTORY "${WORK}/tree"
  COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)

# The recipe names its files, and no more than five.
file(STRINGS "${_patch}" files REGEX "^\\+\\+\\+ ")
list(LENGTH files count)
if(count GREATER 5)
  message(SEND_ERROR "the recipe takes ${count} files: ${files}")
endif()
file(READ "${SOURCE}/docs/design.md" design)
set(headers "")
foreach(file IN LISTS files)
  string(REPLACE "+++ " "" file "${file}")
  get_filename_component(name "${file}" NAME)
  if(NOT design MATCHES "${name}")
    message(SEND_ERROR "docs/design.md does not say that ${name} changes")
  endif()
  if(file MATCHES "^src/(common|plugins/XmlPlugin/common)/(.*[.]h)$")
    list(APPEND headers "${CMAKE_MATCH_2}")
  endif()
endforeach()

execute_process(
  COMMAND "${CMAKE_COMMAND}" -S "${CMAKE_CURRENT_LIST_DIR}/project" -B "${WORK}/build" -G "${GENERATOR}"
          "-DCMAKE_CXX_COMPILER=${COMPILER}" "-DCMAKE_CXX_FLAGS=${FLAGS} -O0 -DNDEBUG" "-DXMLPLUGIN_SANITIZE=${SANITIZE}"
          "-DTREE=${WORK}/tree" "-DHEADERS=${headers}" "-DENGINE=${ENGINE}" "-DTOOL=${TOOL}" "-DPLATFORM=${PLATFORM}"
  COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
execute_process(COMMAND "${CMAKE_COMMAND}" --build "${WORK}/build" --parallel 2 COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)

function(ask i_Expected)
  execute_process(COMMAND "${WORK}/build/xmlvalue" "--plugin=${WORK}/build/XmlPlugin.so" ${ARGN}
    OUTPUT_VARIABLE answer ERROR_VARIABLE errors)
  string(FIND "${answer}" "${i_Expected}" place)
  if(place EQUAL -1)
    message(SEND_ERROR "${ARGN}: ${answer}${errors}")
  endif()
endfunction()
set(_document "${SOURCE}/examples/library.xml")
ask("true" "ends-with('harbour', 'our') = true()" "${_document}")
ask("false" "string(ends-with('harbour', 'har'))" "${_document}")
ask("2" "count(//book[ends-with(@title, 'e')])" "${_document}")
ask("ends-with(string, string) " --list-functions)

execute_process(COMMAND "${WORK}/build/function_tests" COMMAND_ERROR_IS_FATAL ANY OUTPUT_QUIET)
