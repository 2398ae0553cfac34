# What `cmake --install` installs, and the package that CPack makes of it.
include(GNUInstallDirs)
if(WIN32)
  # Windows has no folder for documents, so they go to the root.
  set(CMAKE_INSTALL_DOCDIR .)
endif()

set(targets zenfofr130 zenfo)
foreach(target zenfofr130_archive zenfo-gui zenfo-view)
  if(TARGET ${target})
    list(APPEND targets ${target})
  endif()
endforeach()

# Builds what is missing first: scripts/run builds only one program.
set(installed)
foreach(target ${targets})
  list(APPEND installed $<TARGET_FILE:${target}>)
endforeach()
if(TARGET zenfo_described)
  list(APPEND targets zenfo_described)
  list(APPEND installed ${PROJECT_BINARY_DIR}/share/powershell/zenfo.ps1)
endif()
install(CODE "
  set(installed \"${installed}\")
  foreach(file IN LISTS installed)
    if(NOT EXISTS \"\${file}\")
      message(STATUS \"Building what is missing, \${file} first\")
      execute_process(
        COMMAND \"${CMAKE_COMMAND}\" --build \"${PROJECT_BINARY_DIR}\"
                --target ${targets}
        COMMAND_ERROR_IS_FATAL ANY)
      break()
    endif()
  endforeach()")
list(REMOVE_ITEM targets zenfo_described)
install(TARGETS ${targets})
install(FILES ${PROJECT_SOURCE_DIR}/include/zenfofr130.h TYPE INCLUDE)
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        TYPE DOC)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs ${PROJECT_SOURCE_DIR}/examples
        TYPE DOC)
if(TARGET zenfo_described)
  # The manual page and the shell completions; on Windows only PowerShell's.
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
