# Makes the module-definition file and the native symbol list from the table of
# exported operations (src/frame/exports.inc).
#   cmake -DTABLE=... -DDEF=... -DMAP=... -P generate_exports.cmake
file(STRINGS ${TABLE} rows REGEX "^ZENFO_EXPORT")
set(def "; Made from exports.inc by generate_exports.cmake.\nLIBRARY ZenfoFR130.dll\nEXPORTS\n")
set(map "/* Made from exports.inc by generate_exports.cmake. */\n{\n  global:\n")
foreach(row ${rows})
  if(NOT row MATCHES "^ZENFO_EXPORT\\( *([0-9]+), *([A-Za-z_]+), *([0-9]+),")
    message(FATAL_ERROR "${TABLE}: cannot read the row: ${row}")
  endif()
  math(EXPR bytes "4 * ${CMAKE_MATCH_3}")
  string(APPEND def "  ${CMAKE_MATCH_2}@${bytes} @${CMAKE_MATCH_1} NONAME\n")
  string(APPEND map "    ${CMAKE_MATCH_2};\n")
endforeach()
string(APPEND map "  local: *;\n};\n")
file(WRITE ${DEF} "${def}")
file(WRITE ${MAP} "${map}")
