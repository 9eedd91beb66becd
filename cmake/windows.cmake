# Settings and the storey libraries shared by both Windows trees.
add_library(vt_windows INTERFACE)
target_include_directories(vt_windows INTERFACE ${CMAKE_SOURCE_DIR}/Setup)
target_compile_definitions(vt_windows INTERFACE
  WINVER=0x0500 _WIN32_WINNT=0x0500 _WIN32_IE=0x0500 WIN32_LEAN_AND_MEAN NOMINMAX)
target_compile_options(vt_windows INTERFACE ${VT_PREFIX_MAP}
  $<$<COMPILE_LANGUAGE:C,CXX>:-ffunction-sections -fdata-sections -fstack-protector-strong>)
target_link_libraries(vt_windows INTERFACE vt_warnings)
target_link_options(vt_windows INTERFACE -static -fstack-protector-strong -Wl,--gc-sections
  -Wl,--major-subsystem-version,5,--minor-subsystem-version,0
  -Wl,--major-os-version,5,--minor-os-version,0
  -Wl,--nxcompat -Wl,--dynamicbase -Wl,--no-insert-timestamp
  # A library's base address would otherwise be made from the path of the output.
  -Wl,--disable-auto-image-base)

# The whole program but its entry, as one library: the storeys' order is checked by the include check of ./dev lint.
# -DVT_STOREYS="base;platform" takes only these folders, for a quick build of one storey's tests.
set(VT_STOREYS base platform messages stores ui script fonts oleserver office shell tasks installer
  CACHE STRING "Storeys to build")
set(VT_SOURCES)
foreach(storey ${VT_STOREYS})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/Setup/${storey}/*.cpp)
  list(APPEND VT_SOURCES ${sources})
endforeach()
# The entry, and what replaces parts of the run-time, belong to the program alone.
set(VT_ENTRY ${CMAKE_SOURCE_DIR}/Setup/installer/main.cpp ${CMAKE_SOURCE_DIR}/Setup/installer/runtime.cpp)
list(REMOVE_ITEM VT_SOURCES ${VT_ENTRY})
# The program is built without exceptions, run-time types and unwind tables: together they make a third of it. The tests
# keep them, since a test must outlive a stopped run.
if(VT_TREE STREQUAL "program")
  target_compile_options(vt_windows INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions -fno-rtti
    -fno-threadsafe-statics> -fno-asynchronous-unwind-tables -fno-unwind-tables)
  # From version 13 on the library's headers name the condition variables of its thread layer, which that layer declares
  # for Windows Vista and later alone unless told so. The program has one thread and calls none of them.
  target_compile_definitions(vt_windows INTERFACE
    $<$<VERSION_GREATER_EQUAL:$<CXX_COMPILER_VERSION>,13>:__GTHREAD_HAS_COND=1;__GTHREAD_HIDE_WIN32API=1>)
endif()
add_library(vt_setup STATIC ${VT_SOURCES} ${CMAKE_SOURCE_DIR}/cmake/empty.c)
target_link_libraries(vt_setup PUBLIC vt_windows
  comdlg32 gdi32 user32 advapi32 shell32 ole32 uuid kernel32)

# Adds a resource-only library from one .rc file.
function(vt_resource_library name rc)
  add_library(${name} MODULE ${rc} ${CMAKE_SOURCE_DIR}/cmake/empty.c)
  set_target_properties(${name} PROPERTIES PREFIX "" OUTPUT_NAME ${name} RUNTIME_OUTPUT_DIRECTORY ${VT_BIN}
    LIBRARY_OUTPUT_DIRECTORY ${VT_BIN})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/Setup)
  target_link_options(${name} PRIVATE -nostdlib -Wl,-e,0 -s -Wl,--no-insert-timestamp -Wl,--disable-auto-image-base
    -Wl,--major-subsystem-version,5,--minor-subsystem-version,0)
endfunction()

set(CMAKE_RC_FLAGS "-c 65001")
set(VT_BIN ${CMAKE_SOURCE_DIR}/build/bin CACHE PATH "Where programs and libraries go")

# What the resource scripts include is not in the dependencies that the resource compiler reports.
file(GLOB VT_RESOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/Setup/resources/*)
foreach(rc setup lang_fr lang_en)
  set_source_files_properties(${CMAKE_SOURCE_DIR}/Setup/resources/${rc}.rc PROPERTIES OBJECT_DEPENDS "${VT_RESOURCES}")
endforeach()
