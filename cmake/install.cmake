# What `cmake --install` puts where, and the package that CPack makes of it.
include(GNUInstallDirs)
if(WIN32)
  # Windows has no place for documents: they stand beside the programs' folder.
  set(CMAKE_INSTALL_DOCDIR .)
endif()

install(TARGETS zenfofr130 zenfo)
foreach(target zenfofr130_archive zenfo-view)
  if(TARGET ${target})
    install(TARGETS ${target})
  endif()
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/include/zenfofr130.h TYPE INCLUDE)
install(FILES ${PROJECT_SOURCE_DIR}/README.md TYPE DOC)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/examples
        TYPE DOC)
if(TARGET zenfo_described)
  # The manual page and the completions of shells.
  install(DIRECTORY ${PROJECT_BINARY_DIR}/share/ TYPE DATA)
endif()

set(CPACK_PACKAGE_NAME zenfofr130)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_SYSTEM_NAME windows-x86)
else()
  set(CPACK_GENERATOR TGZ)
  set(CPACK_SYSTEM_NAME linux-${CMAKE_SYSTEM_PROCESSOR})
endif()
include(CPack)
