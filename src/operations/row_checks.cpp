// Every row of the table of operations has a prototype in zenfofr130.h with its
// number of arguments; that it has a definition too, the linker checks.
//
// Tested by tests/contract/exports_test.cpp
#include <cstddef>
#include <cstdint>

#include "zenfofr130.h"

namespace zenfo {
namespace {

// On the 32-bit target every argument and result is one 32-bit word.
template <class Argument>
constexpr bool is_word = UINTPTR_MAX != UINT32_MAX || sizeof(Argument) == 4;

template <class Result, class... Arguments>
constexpr bool fits(Result(ZENFO_CALL*)(Arguments...), size_t arguments) {
  return (is_word<Arguments> && ... && true) &&
         sizeof...(Arguments) == arguments;
}

#define ZENFO_EXPORT(ordinal, routine, arguments, failure, log, access) \
  static_assert(fits(&::routine, arguments), #routine);
#include "frame/exports.inc"
#undef ZENFO_EXPORT

}  // namespace
}  // namespace zenfo
