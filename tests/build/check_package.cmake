# Makes the package for users and looks whether it holds what they need. Arguments: BUILD, WORK,
# WINDOWS.
file(REMOVE_RECURSE ${WORK})
file(MAKE_DIRECTORY ${WORK})
execute_process(COMMAND cpack --config ${BUILD}/CPackConfig.cmake -B ${WORK}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
if(WINDOWS)
  file(GLOB package ${WORK}/*.zip)
  execute_process(COMMAND ${CMAKE_COMMAND} -E tar tf ${package} OUTPUT_VARIABLE listing
                  COMMAND_ERROR_IS_FATAL ANY)
  set(needed OvraBase\\.dll libOvraBase\\.dll\\.a)
else()
  file(GLOB package ${WORK}/*.deb)
  execute_process(COMMAND dpkg-deb --contents ${package} OUTPUT_VARIABLE listing
                  COMMAND_ERROR_IS_FATAL ANY)
  set(needed libOvraBase\\.so\\.[0-9]+ OvraBase\\.pc)
endif()
foreach(name IN LISTS needed ITEMS ovra/ovra\\.h OvraBaseConfig\\.cmake LICENSE README\\.md)
  if(NOT listing MATCHES "/${name}")
    message(FATAL_ERROR "${package} lacks ${name}:\n${listing}")
  endif()
endforeach()
