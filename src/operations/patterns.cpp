// The operations under "Patterns" in zenfofr130.h.
//
// Tested by tests/contract/pattern_test.cpp
#include <array>

#include "files/file_content.h"
#include "operations/operation.h"
#include "pattern/class_file.h"
#include "pattern/compiler.h"
#include "text/byte_tables.h"

namespace zenfo {
namespace {

PatternText pattern_text(const char* text, int32_t is_pattern,
                         int32_t convert) {
  return {text, is_pattern != 0, convert != 0};
}

int32_t compile(PatternContext* context, const PatternText& start,
                const PatternText& main, const PatternText& end) {
  if (context == nullptr) return -1;
  refresh_byte_tables();
  return compile_search(*context, start, main, end);
}

}  // namespace

ZENFO_ENTRY SetPattern(const char* start, const char* main, const char* end,
                       int32_t start_is_pattern, int32_t main_is_pattern,
                       int32_t end_is_pattern, int32_t convert_start,
                       int32_t convert_main, int32_t convert_end) {
  return run<row::SetPattern>([&](Library& library) {
    return compile(library.find_context.get(),
                   pattern_text(start, start_is_pattern, convert_start),
                   pattern_text(main, main_is_pattern, convert_main),
                   pattern_text(end, end_is_pattern, convert_end));
  });
}

ZENFO_ENTRY SetExclusionPattern(const char* start, const char* main,
                                const char* end, int32_t start_is_pattern,
                                int32_t main_is_pattern, int32_t end_is_pattern,
                                int32_t convert_start, int32_t convert_main,
                                int32_t convert_end) {
  return run<row::SetExclusionPattern>([&](Library& library) {
    return compile(library.exclusion_context.get(),
                   pattern_text(start, start_is_pattern, convert_start),
                   pattern_text(main, main_is_pattern, convert_main),
                   pattern_text(end, end_is_pattern, convert_end));
  });
}

ZENFO_ENTRY set_replace_pattern(const char* start, const char* main,
                                const char* end, int32_t start_is_pattern,
                                int32_t main_is_pattern, int32_t end_is_pattern,
                                int32_t convert_start, int32_t convert_main,
                                int32_t convert_end) {
  return run<row::set_replace_pattern>([&](Library& library) {
    return compile(library.replace_context.get(),
                   pattern_text(start, start_is_pattern, convert_start),
                   pattern_text(main, main_is_pattern, convert_main),
                   pattern_text(end, end_is_pattern, convert_end));
  });
}

ZENFO_ENTRY SetPatternTag(const char* first, const char* second,
                          int32_t count_start, int32_t is_pattern,
                          int32_t convert) {
  return run<row::SetPatternTag>([&](Library& library) {
    if (library.find_context == nullptr) return -1;
    refresh_byte_tables();
    return compile_tag(*library.find_context, first, second, count_start != 0,
                       is_pattern != 0, convert != 0);
  });
}

ZENFO_ENTRY set_operators(const char* file) {
  return run<row::set_operators>([&](Library& library) {
    const std::array<PatternContext*, 3> contexts = {
        library.find_context.get(), library.exclusion_context.get(),
        library.replace_context.get()};
    for (const PatternContext* context : contexts) {
      if (context == nullptr) return -1;
    }
    FileContent content;
    if (content.load_file_content(file) <= 0) return -1;
    return apply_class_definitions(content.bytes(), contexts);
  });
}

}  // namespace zenfo
