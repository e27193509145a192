# Manual pages and change logs are compressed in a Debian package, and nowhere else.
find_program(gzip gzip REQUIRED)
file(GLOB_RECURSE documents "${CPACK_TEMPORARY_DIRECTORY}/*.1"
     "${CPACK_TEMPORARY_DIRECTORY}/changelog")
foreach(document IN LISTS documents)
  execute_process(COMMAND "${gzip}" -9 --no-name "${document}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
