# Compares what a built library exports with the list, and what a DLL imports with what every Windows
# has. Arguments: LIBRARY, EXPORT_LIST, and OBJDUMP (for a DLL) or NM (for a shared object).

file(STRINGS ${EXPORT_LIST} lines REGEX "^Ovra")
list(TRANSFORM lines REPLACE " .*" "" OUTPUT_VARIABLE expected)
list(SORT expected)

if(OBJDUMP)
  execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY} OUTPUT_VARIABLE dump COMMAND_ERROR_IS_FATAL ANY)
  # The table of names stands between these two headings.
  string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table.*" names "${dump}")
  string(REGEX REPLACE "\n\n.*" "" names "${names}")
  string(REGEX MATCHALL "\\[ *[0-9]+\\] [^\n]+" rows "${names}")
  list(TRANSFORM rows REPLACE "^\\[ *[0-9]+\\] " "" OUTPUT_VARIABLE actual)

  string(REGEX MATCHALL "DLL Name: [^\n]+" imports "${dump}")
  foreach(import IN LISTS imports)
    if(NOT import MATCHES "^DLL Name: (KERNEL32|msvcrt)\\.dll$")
      message(FATAL_ERROR "${LIBRARY} imports from more than KERNEL32 and msvcrt: ${import}")
    endif()
  endforeach()
  if(NOT imports)
    message(FATAL_ERROR "no imports found: the dump of ${LIBRARY} could not be read")
  endif()
else()
  execute_process(COMMAND ${NM} --dynamic --defined-only --format=posix ${LIBRARY}
                  OUTPUT_VARIABLE dump COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL "[^\n]+ [A-Z] [^\n]*" rows "${dump}")
  list(FILTER rows EXCLUDE REGEX "^OVRABASE_[0-9]+[@ ]")  # the version node itself
  list(TRANSFORM rows REPLACE "[@ ].*" "" OUTPUT_VARIABLE actual)
endif()

list(SORT actual)
if(NOT actual STREQUAL expected)
  message(FATAL_ERROR "exports differ from the list\n  exported: ${actual}\n  listed:   ${expected}")
endif()
list(LENGTH expected count)
message(STATUS "${count} exports, as listed")
