// The operations under "Replacing" in zenfofr130.h.
//
// Tested by tests/contract/replace_test.cpp, tests/contract/case_test.cpp
#include "operations/operation.h"
#include "replace/block_run.h"
#include "replace/case_run.h"
#include "replace/string_run.h"

namespace zenfo {

ZENFO_ENTRY ReplaceBlock(const char* text, int32_t case_flag,
                         int32_t whole_words, int32_t binary_check,
                         int32_t ask_user, int32_t safe_store,
                         int32_t edit_mode, int32_t use_list,
                         int32_t use_pattern, int32_t match_index,
                         int32_t display, int32_t expand) {
  return run<row::ReplaceBlock>([&](Library& library) {
    return run_block_replacement(library,
                                 {.row = row::ReplaceBlock,
                                  .case_flag = case_flag,
                                  .whole_words = whole_words,
                                  .binary_check = binary_check,
                                  .ask_user = ask_user,
                                  .inside_areas = display,
                                  .safe_store = safe_store},
                                 {.text = text,
                                  .edit_mode = edit_mode,
                                  .use_list = use_list,
                                  .use_pattern = use_pattern,
                                  .match_index = match_index,
                                  .expand = expand});
  });
}

ZENFO_ENTRY ReplaceBlock_f(const char* text, int32_t case_flag,
                           int32_t whole_words, int32_t binary_check,
                           int32_t ask_user, int32_t safe_store,
                           const char* list_file, const char* summary,
                           int32_t edit_mode, int32_t use_list,
                           int32_t use_pattern, int32_t match_index,
                           int32_t display, int32_t expand) {
  return run<row::ReplaceBlock_f>([&](Library& library) {
    return run_block_replacement(library,
                                 {.row = row::ReplaceBlock_f,
                                  .case_flag = case_flag,
                                  .whole_words = whole_words,
                                  .binary_check = binary_check,
                                  .ask_user = ask_user,
                                  .inside_areas = display,
                                  .safe_store = safe_store},
                                 {.text = text,
                                  .edit_mode = edit_mode,
                                  .use_list = use_list,
                                  .use_pattern = use_pattern,
                                  .match_index = match_index,
                                  .expand = expand},
                                 LineFiles{list_file, summary});
  });
}

ZENFO_ENTRY ReplaceBlockNbr(const char* text, int32_t case_flag,
                            int32_t whole_words, int32_t binary_check,
                            int32_t ask_user, int32_t safe_store,
                            int32_t edit_mode, int32_t use_list,
                            int32_t use_pattern, int32_t match_index,
                            int32_t display, int32_t expand,
                            const char* placeholder, int32_t first,
                            int32_t step, int32_t run_on) {
  return run<row::ReplaceBlockNbr>([&](Library& library) {
    return run_block_replacement(
        library,
        {.row = row::ReplaceBlockNbr,
         .case_flag = case_flag,
         .whole_words = whole_words,
         .binary_check = binary_check,
         .ask_user = ask_user,
         .inside_areas = display,
         .safe_store = safe_store},
        {.text = text,
         .edit_mode = edit_mode,
         .use_list = use_list,
         .use_pattern = use_pattern,
         .match_index = match_index,
         .expand = expand,
         .numbering = Numbering{placeholder, first, step, run_on}});
  });
}

ZENFO_ENTRY ReplaceBlockNbr_f(const char* text, int32_t case_flag,
                              int32_t whole_words, int32_t binary_check,
                              int32_t ask_user, int32_t safe_store,
                              const char* list_file, const char* summary,
                              int32_t edit_mode, int32_t use_list,
                              int32_t use_pattern, int32_t match_index,
                              int32_t display, int32_t expand,
                              const char* placeholder, int32_t first,
                              int32_t step, int32_t run_on) {
  return run<row::ReplaceBlockNbr_f>([&](Library& library) {
    return run_block_replacement(
        library,
        {.row = row::ReplaceBlockNbr_f,
         .case_flag = case_flag,
         .whole_words = whole_words,
         .binary_check = binary_check,
         .ask_user = ask_user,
         .inside_areas = display,
         .safe_store = safe_store},
        {.text = text,
         .edit_mode = edit_mode,
         .use_list = use_list,
         .use_pattern = use_pattern,
         .match_index = match_index,
         .expand = expand,
         .numbering = Numbering{placeholder, first, step, run_on}},
        LineFiles{list_file, summary});
  });
}

ZENFO_ENTRY ReplaceString(int32_t case_flag, int32_t whole_words,
                          int32_t binary_check, int32_t is_pattern,
                          int32_t convert, int32_t ask_user, int32_t safe_store,
                          int32_t display) {
  return run<row::ReplaceString>([&](Library& library) {
    return run_string_replacement(
        library,
        {.row = row::ReplaceString,
         .case_flag = case_flag,
         .whole_words = whole_words,
         .binary_check = binary_check,
         .ask_user = ask_user,
         .inside_areas = display,
         .safe_store = safe_store},
        {.is_pattern = is_pattern, .convert = convert});
  });
}

ZENFO_ENTRY ReplaceString_f(int32_t case_flag, int32_t whole_words,
                            int32_t binary_check, int32_t is_pattern,
                            int32_t convert, int32_t ask_user,
                            int32_t safe_store, const char* list_file,
                            const char* summary, int32_t display) {
  return run<row::ReplaceString_f>([&](Library& library) {
    return run_string_replacement(
        library,
        {.row = row::ReplaceString_f,
         .case_flag = case_flag,
         .whole_words = whole_words,
         .binary_check = binary_check,
         .ask_user = ask_user,
         .inside_areas = display,
         .safe_store = safe_store},
        {.is_pattern = is_pattern, .convert = convert}, {},
        LineFiles{list_file, summary});
  });
}

ZENFO_ENTRY ReplaceStringNbr(int32_t case_flag, int32_t whole_words,
                             int32_t binary_check, int32_t is_pattern,
                             int32_t convert, int32_t ask_user,
                             int32_t safe_store, int32_t display,
                             const char* placeholder, int32_t first,
                             int32_t step, int32_t run_on) {
  return run<row::ReplaceStringNbr>([&](Library& library) {
    return run_string_replacement(
        library,
        {.row = row::ReplaceStringNbr,
         .case_flag = case_flag,
         .whole_words = whole_words,
         .binary_check = binary_check,
         .ask_user = ask_user,
         .inside_areas = display,
         .safe_store = safe_store},
        {.is_pattern = is_pattern, .convert = convert},
        Numbering{placeholder, first, step, run_on});
  });
}

ZENFO_ENTRY ReplaceStringNbr_f(int32_t case_flag, int32_t whole_words,
                               int32_t binary_check, int32_t is_pattern,
                               int32_t convert, int32_t ask_user,
                               int32_t safe_store, const char* list_file,
                               const char* summary, int32_t display,
                               const char* placeholder, int32_t first,
                               int32_t step, int32_t run_on) {
  return run<row::ReplaceStringNbr_f>([&](Library& library) {
    return run_string_replacement(
        library,
        {.row = row::ReplaceStringNbr_f,
         .case_flag = case_flag,
         .whole_words = whole_words,
         .binary_check = binary_check,
         .ask_user = ask_user,
         .inside_areas = display,
         .safe_store = safe_store},
        {.is_pattern = is_pattern, .convert = convert},
        Numbering{placeholder, first, step, run_on},
        LineFiles{list_file, summary});
  });
}

ZENFO_ENTRY change_case_i(int32_t case_flag, int32_t whole_words,
                          int32_t binary_check, int32_t ask_user,
                          int32_t safe_store, int32_t upper, int32_t display) {
  return run<row::change_case_i>([&](Library& library) {
    return run_case_change(library,
                           {.row = row::change_case_i,
                            .case_flag = case_flag,
                            .whole_words = whole_words,
                            .binary_check = binary_check,
                            .ask_user = ask_user,
                            .inside_areas = display,
                            .safe_store = safe_store},
                           upper != 0);
  });
}

ZENFO_ENTRY change_case_f(int32_t case_flag, int32_t whole_words,
                          int32_t binary_check, int32_t ask_user,
                          int32_t safe_store, const char* list_file,
                          const char* summary, int32_t upper, int32_t display) {
  return run<row::change_case_f>([&](Library& library) {
    return run_case_change_of_one(library,
                                  {.row = row::change_case_f,
                                   .case_flag = case_flag,
                                   .whole_words = whole_words,
                                   .binary_check = binary_check,
                                   .ask_user = ask_user,
                                   .inside_areas = display,
                                   .safe_store = safe_store},
                                  upper != 0,
                                  {.list = list_file, .summary = summary});
  });
}

}  // namespace zenfo
