// Every exported operation as a call with only zeros and nulls, made from the
// table: calls that a careless host might make at any time.
#pragma once

#include <vector>

#include "frame/rows.h"
#include "zenfofr130.h"

namespace zenfo::test {

struct ExportCall {
  const ExportRow* row;
  // Returns the result; 0 for an operation without one.
  int32_t (*with_zeros)();
};

template <class... Arguments>
int32_t call_with_zeros(int32_t(ZENFO_CALL* operation)(Arguments...)) {
  return operation(Arguments{}...);
}
template <class... Arguments>
int32_t call_with_zeros(void(ZENFO_CALL* operation)(Arguments...)) {
  operation(Arguments{}...);
  return 0;
}

inline const std::vector<ExportCall>& export_calls() {
  static const std::vector<ExportCall> calls = {
#define ZENFO_EXPORT(ordinal, routine, arguments, failure, log, access) \
  {&row::routine, [] { return call_with_zeros(&::routine); }},
#include "frame/exports.inc"
#undef ZENFO_EXPORT
  };
  return calls;
}

}  // namespace zenfo::test
