// The operations under "Searching" in zenfofr130.h.
//
// Tested by tests/contract/search_test.cpp,
// tests/contract/search_strings_test.cpp,
// tests/contract/search_output_test.cpp
#include "operations/operation.h"
#include "search/search_run.h"

namespace zenfo {

ZENFO_ENTRY FindBlock(int32_t case_flag, int32_t whole_words,
                      int32_t binary_check, const char* report,
                      int32_t ask_user, int32_t display) {
  return run<row::FindBlock>([&](Library& library) {
    return run_search(library,
                      {.row = row::FindBlock,
                       .case_flag = case_flag,
                       .whole_words = whole_words,
                       .binary_check = binary_check,
                       .ask_user = ask_user,
                       .inside_areas = display},
                      report);
  });
}

ZENFO_ENTRY FindBlock_f(int32_t case_flag, int32_t whole_words,
                        int32_t binary_check, const char* report,
                        int32_t ask_user, const char* list_file,
                        const char* summary, int32_t display) {
  return run<row::FindBlock_f>([&](Library& library) {
    return run_search(library,
                      {.row = row::FindBlock_f,
                       .case_flag = case_flag,
                       .whole_words = whole_words,
                       .binary_check = binary_check,
                       .ask_user = ask_user,
                       .inside_areas = display},
                      report, LineFiles{list_file, summary});
  });
}

ZENFO_ENTRY FindString(int32_t case_flag, int32_t whole_words,
                       int32_t binary_check, const char* report,
                       int32_t is_pattern, int32_t convert, int32_t ask_user,
                       int32_t display) {
  return run<row::FindString>([&](Library& library) {
    return run_string_search(library,
                             {.row = row::FindString,
                              .case_flag = case_flag,
                              .whole_words = whole_words,
                              .binary_check = binary_check,
                              .ask_user = ask_user,
                              .inside_areas = display},
                             {.is_pattern = is_pattern, .convert = convert},
                             report);
  });
}

// Intended: the display option is ignored; 0 is used.
ZENFO_ENTRY FindString_f(int32_t case_flag, int32_t whole_words,
                         int32_t binary_check, const char* report,
                         int32_t is_pattern, int32_t convert, int32_t ask_user,
                         const char* list_file, const char* summary,
                         int32_t /*display*/) {
  return run<row::FindString_f>([&](Library& library) {
    return run_string_search(library,
                             {.row = row::FindString_f,
                              .case_flag = case_flag,
                              .whole_words = whole_words,
                              .binary_check = binary_check,
                              .ask_user = ask_user},
                             {.is_pattern = is_pattern, .convert = convert},
                             report, LineFiles{list_file, summary});
  });
}

ZENFO_ENTRY FindExcludedArea(int32_t case_flag, int32_t whole_words,
                             int32_t binary_check, const char* report) {
  return run<row::FindExcludedArea>([&](Library& library) {
    return run_area_search(library,
                           {.row = row::FindExcludedArea,
                            .case_flag = case_flag,
                            .whole_words = whole_words,
                            .binary_check = binary_check},
                           report);
  });
}

}  // namespace zenfo
