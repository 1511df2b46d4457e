# Makes the archive for Windows users and looks whether it holds what they need. Arguments: BUILD, WORK.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
execute_process(COMMAND cpack --config ${BUILD}/CPackConfig.cmake -B ${WORK}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(GLOB package ${WORK}/*.zip)
execute_process(COMMAND ${CMAKE_COMMAND} -E tar tf ${package} OUTPUT_VARIABLE listing
                COMMAND_ERROR_IS_FATAL ANY)
foreach(name IN ITEMS OvraBase.dll libOvraBase.dll.a libOvraBase.a OvraBase.lib OvraBase.def ovra/ovra.h
                      OvraBase.pas Native.cs OvraBaseConfig.cmake LICENSE README.md)
  if(NOT listing MATCHES "/${name}\n")
    message(FATAL_ERROR "${package} lacks ${name}:\n${listing}")
  endif()
endforeach()
