#include "pattern/pattern_ops.h"

#include <array>

#include "files/file_content.h"
#include "pattern/class_file.h"
#include "text/byte_tables.h"

namespace zenfo {
namespace {

int32_t compile(PatternContext* context, const PatternText& start,
                const PatternText& main, const PatternText& end) {
  if (context == nullptr) return -1;
  refresh_byte_tables();
  return compile_search(*context, start, main, end);
}

}  // namespace

int32_t set_pattern(Library& library, const PatternText& start,
                    const PatternText& main, const PatternText& end) {
  return compile(library.find_context.get(), start, main, end);
}

int32_t set_exclusion_pattern(Library& library, const PatternText& start,
                              const PatternText& main, const PatternText& end) {
  return compile(library.exclusion_context.get(), start, main, end);
}

int32_t set_replace_pattern(Library& library, const PatternText& start,
                            const PatternText& main, const PatternText& end) {
  return compile(library.replace_context.get(), start, main, end);
}

int32_t set_pattern_tag(Library& library, const char* first, const char* second,
                        int32_t count_start, int32_t is_pattern,
                        int32_t convert) {
  if (library.find_context == nullptr) return -1;
  refresh_byte_tables();
  return compile_tag(*library.find_context, first, second, count_start != 0,
                     is_pattern != 0, convert != 0);
}

int32_t set_operators(Library& library, const char* file) {
  const std::array<PatternContext*, 3> contexts = {
      library.find_context.get(), library.exclusion_context.get(),
      library.replace_context.get()};
  for (const PatternContext* context : contexts) {
    if (context == nullptr) return -1;
  }
  FileContent content;
  if (content.load_file_content(file) <= 0) return -1;
  return apply_class_definitions(content.bytes(), contexts);
}

}  // namespace zenfo
