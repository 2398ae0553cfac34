# Reads the version from include/zenfofr130.h, where alone it is stated, into
# zenfo_version. The text and the number there must agree.
set(zenfo_header ${CMAKE_CURRENT_SOURCE_DIR}/include/zenfofr130.h)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${zenfo_header})
file(READ ${zenfo_header} zenfo_header_text)

if(NOT zenfo_header_text MATCHES
   "#define ZENFO_VERSION \"(([0-9]+)\\.([0-9]+)\\.([0-9]+))\"")
  message(FATAL_ERROR "${zenfo_header} states no ZENFO_VERSION")
endif()
set(zenfo_version ${CMAKE_MATCH_1})
math(EXPR zenfo_number
     "${CMAKE_MATCH_2} * 10000 + ${CMAKE_MATCH_3} * 100 + ${CMAKE_MATCH_4}")

if(NOT zenfo_header_text MATCHES
   "#define ZENFO_VERSION_NUMBER ${zenfo_number} ")
  message(FATAL_ERROR "${zenfo_header}: ZENFO_VERSION_NUMBER must be "
                      "${zenfo_number}, as ZENFO_VERSION is ${zenfo_version}")
endif()
