# cmake -DFOLDER=... -DEXPECTED=... -P compare_output.cmake -- PROGRAM ARGUMENT...
#
# Runs a program in FOLDER, which is emptied first; what it prints must be the text of the file
# EXPECTED.
cmake_minimum_required(VERSION 3.25)

set(command)
set(is_command FALSE)
math(EXPR last "${CMAKE_ARGC} - 1")
foreach(index RANGE ${last})
  if(is_command)
    list(APPEND command "${CMAKE_ARGV${index}}")
  elseif(CMAKE_ARGV${index} STREQUAL "--")
    set(is_command TRUE)
  endif()
endforeach()

file(REMOVE_RECURSE "${FOLDER}")
file(MAKE_DIRECTORY "${FOLDER}")
execute_process(COMMAND ${command} WORKING_DIRECTORY "${FOLDER}" OUTPUT_VARIABLE printed
                ERROR_VARIABLE complained RESULT_VARIABLE status)
file(READ "${EXPECTED}" expected)
if(NOT status EQUAL 0 OR NOT complained STREQUAL "" OR NOT printed STREQUAL expected)
  message(FATAL_ERROR "It ended with ${status} and printed\n${printed}\nand to standard error\n"
                      "${complained}\nExpected is ${EXPECTED}")
endif()
