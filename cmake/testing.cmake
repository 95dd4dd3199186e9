# Helpers for test folders.
#   kel_add_qttest(NAME SOURCES a.cpp ... LIBS lib ...)  a QtTest executable run offscreen by CTest
#   kel_add_gtest(NAME SOURCES a.cpp ... LIBS lib ...)   a GoogleTest executable run by CTest
# Each test gets a timeout, a pinned C locale and the offscreen platform.
function(kel_add_qttest name)
  cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LIBS" ${ARGN})
  add_executable(${name} ${arg_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON)
  target_link_libraries(${name} PRIVATE Qt6::Test ${arg_LIBS})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT}
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;QT_PLUGIN_PATH=${CMAKE_BINARY_DIR}/plugins")
endfunction()

function(kel_add_gtest name)
  cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;LIBS" ${ARGN})
  find_package(GTest REQUIRED)
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE GTest::gtest GTest::gtest_main ${arg_LIBS})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 120)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT ${arg_TIMEOUT} ENVIRONMENT "LC_ALL=C.UTF-8")
endfunction()
