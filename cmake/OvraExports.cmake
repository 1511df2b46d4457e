# Makes the linker's export lists from src/platform/exports.txt.

set(OVRA_EXPORT_LIST ${PROJECT_SOURCE_DIR}/src/platform/exports.txt)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${OVRA_EXPORT_LIST})

file(STRINGS ${OVRA_EXPORT_LIST} export_lines REGEX "^Ovra")
set(OVRA_EXPORT_NAMES)
set(version_script "OVRABASE_${PROJECT_VERSION_MAJOR} {\n  global:\n")
set(dll_definitions "LIBRARY OvraBase.dll\nEXPORTS\n")
set(import_definitions "LIBRARY OvraBase.dll\nEXPORTS\n")
foreach(line IN LISTS export_lines)
  if(NOT line MATCHES "^(Ovra[A-Za-z0-9_]+) ([0-9]+)$")
    message(FATAL_ERROR "exports.txt: cannot read the line \"${line}\"")
  endif()
  set(name ${CMAKE_MATCH_1})
  list(APPEND OVRA_EXPORT_NAMES ${name})
  string(APPEND version_script "    ${name};\n")
  # Inside, a __stdcall function is called Name@bytes; outside, the plain name stands.
  string(APPEND dll_definitions "  ${name}=${name}@${CMAKE_MATCH_2}\n")
  string(APPEND import_definitions "  ${name}@${CMAKE_MATCH_2}\n")
endforeach()
string(APPEND version_script "  local:\n    *;\n};\n")

set(OVRA_VERSION_SCRIPT ${PROJECT_BINARY_DIR}/exports/OvraBase.map)
set(OVRA_DLL_DEFINITIONS ${PROJECT_BINARY_DIR}/exports/OvraBase.def)
set(OVRA_IMPORT_DEFINITIONS ${PROJECT_BINARY_DIR}/exports/OvraBaseImport.def)
file(CONFIGURE OUTPUT ${OVRA_VERSION_SCRIPT} CONTENT "${version_script}" @ONLY)
file(CONFIGURE OUTPUT ${OVRA_DLL_DEFINITIONS} CONTENT "${dll_definitions}" @ONLY)
file(CONFIGURE OUTPUT ${OVRA_IMPORT_DEFINITIONS} CONTENT "${import_definitions}" @ONLY)
