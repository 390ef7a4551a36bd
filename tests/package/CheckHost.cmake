# check_host(PROGRAM): the example host finds values, finds none, and tells errors.
# Needs: EXAMPLES.

function(expect_host i_Status i_Out i_Err)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  if(NOT status EQUAL i_Status OR NOT out STREQUAL i_Out OR NOT err STREQUAL i_Err)
    message(SEND_ERROR "${ARGN}: status ${status}, not ${i_Status}\nout: ${out}err: ${err}")
  endif()
endfunction()

function(check_host i_Program)
  expect_host(0 "alpha\nbeta\ngamma\n" "" "${i_Program}" "//server/@name" "${EXAMPLES}/servers.xml")
  expect_host(1 "" "" "${i_Program}" "//printer/@name" "${EXAMPLES}/servers.xml")
  expect_host(2 "" "error -15103: the document could not be read as XML\n" "${i_Program}" "/a/@b" "${EXAMPLES}/none.xml")
  expect_host(2 "" "error -15105: the expression is not recognised\n" "${i_Program}" "a(" "${EXAMPLES}/servers.xml")
  expect_host(2 "" "Usage: host XPATH FILE\n" "${i_Program}")
endfunction()
