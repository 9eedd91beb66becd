# One GoogleTest program per storey (tests/<storey>/*_test.cpp), and the small programs the tests drive.
set(VT_GTEST /usr/src/googletest/googletest CACHE PATH "GoogleTest's sources")
add_library(gtest STATIC ${VT_GTEST}/src/gtest-all.cc)
target_include_directories(gtest SYSTEM PUBLIC ${VT_GTEST}/include PRIVATE ${VT_GTEST})
target_compile_options(gtest PRIVATE -w -g0 -O1)

target_compile_definitions(vt_windows INTERFACE _GLIBCXX_ASSERTIONS)
target_compile_options(vt_windows INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-g0 -O1>)

file(GLOB VT_SUPPORT CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/support/*.cpp)
add_library(vt_test_support STATIC ${VT_SUPPORT} ${CMAKE_SOURCE_DIR}/cmake/empty.c)
target_include_directories(vt_test_support PUBLIC ${CMAKE_SOURCE_DIR}/tests)
target_link_libraries(vt_test_support PUBLIC vt_setup gtest)

set(VT_TEST_RC)
if(EXISTS ${CMAKE_SOURCE_DIR}/Setup/resources/setup.rc)
  set(VT_TEST_RC ${CMAKE_SOURCE_DIR}/Setup/resources/setup.rc)
endif()
foreach(storey ${VT_STOREYS} bench sequence gui)
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tests/${storey}/*_test.cpp)
  if(sources)
    add_executable(${storey}_test ${sources} ${VT_TEST_RC})
    target_include_directories(${storey}_test PRIVATE ${CMAKE_SOURCE_DIR}/Setup)
    target_link_libraries(${storey}_test PRIVATE vt_test_support)
    set_target_properties(${storey}_test PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${VT_BIN})
    # Test bodies compare and cast freely; the program's own sources keep the strict level. As a property of the
    # sources these come after the options of the libraries.
    set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS
      "-Wno-conversion;-Wno-old-style-cast;-Wno-null-dereference")
  endif()
endforeach()

# The language libraries for the tests of resources; the program's build makes those that are shipped.
vt_resource_library(VTsu6fr ${CMAKE_SOURCE_DIR}/Setup/resources/lang_fr.rc)
vt_resource_library(VTsu6en ${CMAKE_SOURCE_DIR}/Setup/resources/lang_en.rc)
set_target_properties(VTsu6fr VTsu6en PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${VT_BIN}/testdata/languages)
if(TARGET messages_test)
  add_dependencies(messages_test VTsu6fr VTsu6en)
endif()
if(TARGET ui_test)
  add_dependencies(ui_test VTsu6fr VTsu6en)
endif()

if(EXISTS ${CMAKE_SOURCE_DIR}/tests/helpers/CMakeLists.txt)
  add_subdirectory(tests/helpers)
endif()
add_subdirectory(bench)
