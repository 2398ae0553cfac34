# The engine: two sets of objects, from which the library, the tests and the
# benchmarks are linked. zenfo_operations is the folder of the exported
# operations, zenfo_engine everything below it. Sources are found by folder; of
# src/platform only the folder of the target system is built.

if(WIN32)
  set(zenfo_platform win32)
else()
  set(zenfo_platform posix)
endif()

file(GLOB zenfo_sources CONFIGURE_DEPENDS
     ${PROJECT_SOURCE_DIR}/src/*/*.cpp
     ${PROJECT_SOURCE_DIR}/src/platform/${zenfo_platform}/*.cpp)
list(FILTER zenfo_sources EXCLUDE REGEX "/src/operations/")

# The same loops, once for each set of vectors.
set_source_files_properties(
    ${PROJECT_SOURCE_DIR}/src/text/substring_avx2.cpp
    ${PROJECT_SOURCE_DIR}/src/text/substring_sse2.cpp
    PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)

add_library(zenfo_engine STATIC ${zenfo_sources})
target_include_directories(zenfo_engine PUBLIC ${PROJECT_SOURCE_DIR}/src
                                               ${PROJECT_SOURCE_DIR}/include)
if(ZENFO_UNITY)
  target_precompile_headers(zenfo_engine PRIVATE
      <algorithm> <array> <cstdint> <cstring> <functional> <memory> <string>
      <string_view> <vector>)
endif()
if(WIN32)
  target_link_libraries(zenfo_engine PUBLIC shell32 advapi32 oleaut32 gdi32
                                            user32)
endif()

# Objects, because the linker would drop operations from an archive.
file(GLOB zenfo_operation_sources CONFIGURE_DEPENDS
     ${PROJECT_SOURCE_DIR}/src/operations/*.cpp)
add_library(zenfo_operations OBJECT ${zenfo_operation_sources})
target_link_libraries(zenfo_operations PUBLIC zenfo_engine)
if(ZENFO_UNITY)
  target_precompile_headers(zenfo_operations REUSE_FROM zenfo_engine)
endif()

# The library that hosts load: the engine and its exported operations.
set(exports_table ${PROJECT_SOURCE_DIR}/src/frame/exports.inc)
set(exports_def ${PROJECT_BINARY_DIR}/ZenfoFR130.def)
set(exports_map ${PROJECT_BINARY_DIR}/zenfofr130.map)
add_custom_command(
  OUTPUT ${exports_def} ${exports_map}
  COMMAND ${CMAKE_COMMAND} -DTABLE=${exports_table} -DDEF=${exports_def}
          -DMAP=${exports_map}
          -P ${PROJECT_SOURCE_DIR}/cmake/generate_exports.cmake
  DEPENDS ${exports_table} ${PROJECT_SOURCE_DIR}/cmake/generate_exports.cmake
  VERBATIM)
add_custom_target(zenfo_export_lists DEPENDS ${exports_def} ${exports_map})

add_library(zenfofr130 SHARED)
target_link_libraries(zenfofr130 PRIVATE zenfo_operations)
target_include_directories(zenfofr130 INTERFACE ${PROJECT_SOURCE_DIR}/include)
add_dependencies(zenfofr130 zenfo_export_lists)
if(WIN32)
  set_target_properties(zenfofr130 PROPERTIES PREFIX "" OUTPUT_NAME ZenfoFR130
                        IMPORT_PREFIX lib LINK_DEPENDS ${exports_def})
  target_sources(zenfofr130 PRIVATE ${exports_def})
  zenfo_add_version(zenfofr130 ZenfoFR130 "${PROJECT_DESCRIPTION}")
else()
  set_target_properties(zenfofr130 PROPERTIES LINK_DEPENDS ${exports_map})
  target_link_options(zenfofr130 PRIVATE
                      -Wl,--version-script=${exports_map})
  if(NOT ZENFO_SANITIZE)
    # The programs that load it bring the sanitizers' functions.
    target_link_options(zenfofr130 PRIVATE -Wl,--no-undefined)
  endif()
endif()
