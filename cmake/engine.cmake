# The engine: one set of objects, from which the library, the tests and the
# benchmarks are linked. Sources are found by folder; the platform's half of
# src/platform is the one that fits the target.

if(WIN32)
  set(zenfo_platform win32)
else()
  set(zenfo_platform posix)
endif()

file(GLOB zenfo_sources CONFIGURE_DEPENDS
     ${PROJECT_SOURCE_DIR}/src/*/*.cpp
     ${PROJECT_SOURCE_DIR}/src/platform/${zenfo_platform}/*.cpp)
list(REMOVE_ITEM zenfo_sources ${PROJECT_SOURCE_DIR}/src/frame/exports.cpp)

add_library(zenfo_engine STATIC ${zenfo_sources})
target_include_directories(zenfo_engine PUBLIC ${PROJECT_SOURCE_DIR}/src
                                               ${PROJECT_SOURCE_DIR}/include)
if(WIN32)
  target_link_libraries(zenfo_engine PUBLIC shell32 advapi32 oleaut32 gdi32
                                            user32)
endif()
