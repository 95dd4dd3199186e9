# The installable CMake package: find_package(kelfractionint) gives kelfractionint::fractioni.
# Each folder adds its installable targets to the export set "kelfractionintTargets".
if(KEL_ENGINE_ONLY)
  return()
endif()

set(KEL_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/kelfractionint)
install(EXPORT kelfractionintTargets
        NAMESPACE kelfractionint::
        DESTINATION ${KEL_CMAKE_DIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/kelfractionintConfig.cmake.in
                              ${CMAKE_BINARY_DIR}/kelfractionintConfig.cmake
                              INSTALL_DESTINATION ${KEL_CMAKE_DIR})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/kelfractionintConfigVersion.cmake
                                 VERSION ${PROJECT_VERSION}
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/kelfractionintConfig.cmake
              ${CMAKE_BINARY_DIR}/kelfractionintConfigVersion.cmake
        DESTINATION ${KEL_CMAKE_DIR})
