# kel_add_library(TARGET OUTPUT_NAME NAME [QT] SOURCES ... HEADERS ...)
# One folder's SHARED library: alias kelfractionint::TARGET, an export header TARGET_export.h,
# hidden visibility, its headers found from the build tree and installed under
# include/kelfractionint (consumers write <kelfractionint/x.h> or <x.h>), the library installed
# into the package's export set. QT turns on moc.
function(kel_add_library target)
  cmake_parse_arguments(arg "QT" "OUTPUT_NAME" "SOURCES;HEADERS" ${ARGN})
  add_library(${target} SHARED ${arg_SOURCES} ${arg_HEADERS})
  add_library(kelfractionint::${target} ALIAS ${target})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${arg_OUTPUT_NAME}
                        VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  if(arg_QT)
    set_target_properties(${target} PROPERTIES AUTOMOC ON)
  endif()
  generate_export_header(${target} BASE_NAME ${target})
  target_include_directories(${target} PUBLIC
    $<BUILD_INTERFACE:${CMAKE_CURRENT_SOURCE_DIR}>
    $<BUILD_INTERFACE:${CMAKE_CURRENT_BINARY_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/kelfractionint>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  install(TARGETS ${target} EXPORT kelfractionintTargets
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
          RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  install(FILES ${arg_HEADERS} ${CMAKE_CURRENT_BINARY_DIR}/${target}_export.h
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/kelfractionint)
endfunction()
