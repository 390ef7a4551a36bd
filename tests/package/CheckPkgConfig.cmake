# The same host built with nothing but what pkg-config tells.
# Needs: PREFIX, LIBDIR, EXAMPLES, WORK, COMPILER, FLAGS, VERSION.
cmake_minimum_required(VERSION 3.25)

set(ENV{PKG_CONFIG_LIBDIR} "${PREFIX}/${LIBDIR}/pkgconfig")
function(ask o_Answer)
  execute_process(COMMAND pkg-config ${ARGN} xmlplugin OUTPUT_VARIABLE answer OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(${o_Answer} "${answer}" PARENT_SCOPE)
endfunction()

ask(version --modversion)
if(NOT version STREQUAL VERSION)
  message(SEND_ERROR "pkg-config knows version ${version}, not ${VERSION}")
endif()
ask(flags --cflags --libs)
separate_arguments(flags UNIX_COMMAND "${flags}")
ask(plugin --variable=plugin)

file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
execute_process(COMMAND "${COMPILER}" -std=c++20 ${FLAGS} "-DPLUGIN_FILE=\"${plugin}\"" "${EXAMPLES}/host/host.cpp" -o "${WORK}/host"
    ${flags} "-Wl,-rpath,${PREFIX}/${LIBDIR}" -ldl
  COMMAND_ERROR_IS_FATAL ANY)

include("${CMAKE_CURRENT_LIST_DIR}/CheckHost.cmake")
check_host("${WORK}/host")
