# Adds every direct subfolder of the current folder that has a CMakeLists.txt, so that each
# subsystem keeps its tests, benchmarks or tools in a folder of its own.
file(GLOB kel_subfolders LIST_DIRECTORIES true ${CMAKE_CURRENT_SOURCE_DIR}/*)
list(SORT kel_subfolders)
foreach(sub IN LISTS kel_subfolders)
  if(IS_DIRECTORY ${sub} AND EXISTS ${sub}/CMakeLists.txt)
    add_subdirectory(${sub})
  endif()
endforeach()
