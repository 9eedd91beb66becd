# build/bin/Setup.exe, its language libraries, and the sample distribution.
add_executable(Setup WIN32 ${VT_ENTRY} ${CMAKE_SOURCE_DIR}/Setup/resources/setup.rc)
target_include_directories(Setup PRIVATE ${CMAKE_SOURCE_DIR}/Setup)
target_link_libraries(Setup PRIVATE vt_setup)
target_link_options(Setup PRIVATE -s)
set_target_properties(Setup PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${VT_BIN})

vt_resource_library(VTsu6fr ${CMAKE_SOURCE_DIR}/Setup/resources/lang_fr.rc)
vt_resource_library(VTsu6en ${CMAKE_SOURCE_DIR}/Setup/resources/lang_en.rc)

if(EXISTS ${CMAKE_SOURCE_DIR}/dist/CMakeLists.txt)
  # Its own build folder must not be the one that the distribution is laid out in.
  add_subdirectory(dist sample)
endif()
