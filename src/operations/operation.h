// What every exported operation is defined with.
//
// An operation has a prototype in zenfofr130.h, a row in frame/exports.inc, and
// one definition in this folder, in the file that is named after its heading in
// zenfofr130.h.
//
// Tested by tests/unit/operations/operation_test.cpp
#pragma once

#include <cstdint>
#include <utility>

#include "frame/error_log.h"
#include "frame/guard.h"
#include "frame/rows.h"
#include "library/library.h"
#include "zenfofr130.h"

// Begins a definition. The name belongs to no namespace, even inside one.
#define ZENFO_ENTRY extern "C" ZENFO_API int32_t ZENFO_CALL

namespace zenfo {

// Runs an operation's steps on the library, in the error frame of its row.
template <const ExportRow& kRow, class Steps>
int32_t run(Steps&& steps) noexcept {
  return guarded(kRow, [&] { return steps(library()); });
}

// Logs why an operation does nothing, and returns -1.
inline int32_t refuse(const ExportRow& row, const char* message,
                      const char* context) {
  report_error(message, context, row.routine);
  return -1;
}

}  // namespace zenfo
