# Installation, the CMake package and pkg-config file that hosts find, and the packages for users.
include(CMakePackageConfigHelpers)

install(TARGETS OvraBase EXPORT OvraBaseTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime
                NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY include/ovra DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/OvraBase)
install(EXPORT OvraBaseTargets NAMESPACE OvraBase:: DESTINATION ${package_dir}
        COMPONENT development)
configure_package_config_file(cmake/OvraBaseConfig.cmake.in
  ${PROJECT_BINARY_DIR}/package/OvraBaseConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/OvraBaseConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)  # what CONTRIBUTING.md promises
install(FILES ${PROJECT_BINARY_DIR}/package/OvraBaseConfig.cmake
              ${PROJECT_BINARY_DIR}/package/OvraBaseConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# From the folder of the .pc file to the prefix, so that an installed tree may lie anywhere.
file(RELATIVE_PATH OVRA_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/OvraBase.pc.in ${PROJECT_BINARY_DIR}/package/OvraBase.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/package/OvraBase.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

install(FILES LICENSE README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR}
        COMPONENT runtime)

install(DIRECTORY examples docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(FILES csharp/Native.cs pascal/OvraBase.pas DESTINATION ${CMAKE_INSTALL_DATADIR}/OvraBase
        COMPONENT development)

set(CPACK_PACKAGE_NAME ovrabase)
set(CPACK_PACKAGE_VENDOR "OvraBase developers")
set(CPACK_PACKAGE_CONTACT "OvraBase developers <ovrabase@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY ${PROJECT_DESCRIPTION})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_RESOURCE_FILE_README ${PROJECT_SOURCE_DIR}/README.md)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_FILE_NAME ovrabase-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME ovrabase-${PROJECT_VERSION}-win32)
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
  set(CPACK_DEBIAN_PACKAGE_SECTION libs)
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)  # built on a 64-bit machine
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE i386)
    set(CPACK_PACKAGE_FILE_NAME ovrabase-${PROJECT_VERSION}-i386)
  endif()
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
endif()
include(CPack)
