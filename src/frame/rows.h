// One constant per exported operation, made from the table in exports.inc.
//
// Tested by tests/unit/frame/rows_test.cpp
#pragma once

#include <cstdint>

namespace zenfo {

enum class FaultLog : bool { kSilent, kLogged };
enum class Access : bool { kShared, kAlone };

struct ExportRow {
  uint16_t ordinal;
  const char* routine;  // the name under which faults are logged
  uint8_t arguments;    // 32-bit arguments
  int32_t failure;
  FaultLog log;
  Access access;
};

namespace row {
#define ZENFO_EXPORT(ordinal, routine, arguments, failure, log, access) \
  inline constexpr ExportRow routine{ordinal, #routine,      arguments, \
                                     failure, FaultLog::log, Access::access};
#include "frame/exports.inc"
#undef ZENFO_EXPORT
}  // namespace row

// All rows, in the table's order (rising ordinals).
inline constexpr ExportRow kExportRows[] = {
#define ZENFO_EXPORT(ordinal, routine, arguments, failure, log, access) \
  row::routine,
#include "frame/exports.inc"
#undef ZENFO_EXPORT
};

}  // namespace zenfo
