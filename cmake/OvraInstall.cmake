# Installation, and the CMake package and pkg-config file that hosts find.
include(CMakePackageConfigHelpers)

set(CMAKE_INSTALL_DOCDIR ${CMAKE_INSTALL_DATAROOTDIR}/doc/ovrabase)

install(TARGETS OvraBase OvraBaseStatic EXPORT OvraBaseTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/ovra DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
if(WIN32)  # for linkers that read import libraries of other forms, or none
  install(FILES ${OVRA_IMPORT_DEFINITIONS} DESTINATION ${CMAKE_INSTALL_LIBDIR} RENAME OvraBase.def)
  if(OVRA_MSVC_IMPORT_LIBRARY)
    install(FILES ${OVRA_MSVC_IMPORT_LIBRARY} DESTINATION ${CMAKE_INSTALL_LIBDIR})
  endif()
endif()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/OvraBase)
install(EXPORT OvraBaseTargets NAMESPACE OvraBase:: DESTINATION ${package_dir})
configure_package_config_file(cmake/OvraBaseConfig.cmake.in
  ${PROJECT_BINARY_DIR}/package/OvraBaseConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/package/OvraBaseConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)  # what CONTRIBUTING.md promises
install(FILES ${PROJECT_BINARY_DIR}/package/OvraBaseConfig.cmake
              ${PROJECT_BINARY_DIR}/package/OvraBaseConfigVersion.cmake
        DESTINATION ${package_dir})

# From the folder of the .pc file to the prefix, so that an installed tree may lie anywhere.
file(RELATIVE_PATH OVRA_PREFIX_FROM_PC /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
configure_file(cmake/OvraBase.pc.in ${PROJECT_BINARY_DIR}/package/OvraBase.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/package/OvraBase.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(OVRA_BUILD_TOOLS)
  install(TARGETS ovra RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
install(FILES csharp/Native.cs pascal/OvraBase.pas DESTINATION ${CMAKE_INSTALL_DATADIR}/OvraBase)
install(FILES LICENSE README.md CHANGELOG.md SECURITY.md DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY examples docs DESTINATION ${CMAKE_INSTALL_DOCDIR})
# The site, where scripts/docs has made it.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/build/site/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/html OPTIONAL)

# An archive of all that; packages for Debian are made by scripts/build-packages.
set(CPACK_PACKAGE_NAME ovrabase)
set(CPACK_PACKAGE_VENDOR "OvraBase developers")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_RESOURCE_FILE_README ${PROJECT_SOURCE_DIR}/README.md)
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME ovrabase-${PROJECT_VERSION}-win32)
else()
  set(CPACK_GENERATOR TGZ)
  set(CPACK_PACKAGE_FILE_NAME ovrabase-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
endif()
include(CPack)
