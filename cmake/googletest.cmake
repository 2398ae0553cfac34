# GoogleTest and GoogleMock: natively the system's own libraries, for the
# Windows build from the system's sources.
if(NOT WIN32)
  find_package(GTest CONFIG REQUIRED)
  add_library(gmock_main ALIAS GTest::gmock_main)
  return()
endif()
if(NOT EXISTS /usr/src/googletest/CMakeLists.txt)
  message(FATAL_ERROR "GoogleTest's sources are missing: apt install googletest")
endif()
# GoogleTest's old policies would ignore the settings below.
set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
set(INSTALL_GTEST OFF)
set(gtest_force_shared_crt ON)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest
                 EXCLUDE_FROM_ALL)
foreach(library gtest gtest_main gmock gmock_main)
  target_compile_options(${library} PRIVATE -w)
endforeach()
