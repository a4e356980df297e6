# Runs PROGRAM and compares what it prints with the file EXPECTED; blanks at line ends and the kind of line end do not
# count, and neither does what a log says about times.
execute_process(COMMAND ${PROGRAM} RESULT_VARIABLE result OUTPUT_VARIABLE output)
file(READ "${EXPECTED}" expected)
foreach(text output expected)
  string(REGEX REPLACE "[ \r]+\n" "\n" ${text} "${${text}}")
  string(REGEX REPLACE "(Log started at|Time from log start =) [^\n]+" "\\1 ..." ${text} "${${text}}")
endforeach()
if(NOT result STREQUAL "0")
  message(FATAL_ERROR "ended with ${result}, having said:\n${output}")
endif()
if(NOT output STREQUAL expected)
  message(FATAL_ERROR "said:\n${output}\nbut was to say:\n${expected}")
endif()
