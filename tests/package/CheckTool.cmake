# The installed tool finds the libraries and the plug-in of its own installation, called by its path or through a link.
# Needs: PREFIX, BINDIR, EXAMPLES.
cmake_minimum_required(VERSION 3.25)

function(expect i_Expected)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE answer COMMAND_ERROR_IS_FATAL ANY)
  if(NOT answer MATCHES "^${i_Expected}$")
    message(SEND_ERROR "${ARGN} prints:\n${answer}and not:\n${i_Expected}")
  endif()
endfunction()

set(tool "${PREFIX}/${BINDIR}/xmlvalue")
expect("b1\nb2\nb3\nb4\nb5\n" "${tool}" "//book/@id" "${EXAMPLES}/library.xml")

# The modules: one reads documents with a document type declaration, the other one archives.
file(WRITE "${PREFIX}/declared.xml" "<!DOCTYPE a [<!ENTITY e 'of an entity'>]><a x='&e;'/>")
expect("of an entity\n" "${tool}" "a/@x" "${PREFIX}/declared.xml")
execute_process(COMMAND "${CMAKE_COMMAND}" -E tar cf packed.zip --format=zip declared.xml
  WORKING_DIRECTORY "${PREFIX}" COMMAND_ERROR_IS_FATAL ANY)
expect("of an entity\n" "${tool}" "a/@x" "${PREFIX}/packed.zip")
file(REMOVE "${PREFIX}/declared.xml" "${PREFIX}/packed.zip")

expect("[^\n]*\n[^\n]*${PREFIX}/[^\n]*/XmlPlugin.so[^\n]*\n" "${tool}" --version)

file(MAKE_DIRECTORY "${PREFIX}/elsewhere")
file(CREATE_LINK "${tool}" "${PREFIX}/elsewhere/values" SYMBOLIC)
expect("3\n" "${PREFIX}/elsewhere/values" "count(//server)" "${EXAMPLES}/servers.xml")
file(REMOVE_RECURSE "${PREFIX}/elsewhere")
