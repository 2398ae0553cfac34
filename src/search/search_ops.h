// The search operations, as exported; zenfofr130.h documents them for hosts.
//
// Tested by tests/contract/search_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

int32_t find_block(Library& library, int32_t case_flag, int32_t whole_words,
                   int32_t binary_check, const char* report_path,
                   int32_t ask_user, int32_t display);
int32_t find_block_f(Library& library, int32_t case_flag, int32_t whole_words,
                     int32_t binary_check, const char* report_path,
                     int32_t ask_user, const char* list_path,
                     const char* summary_path, int32_t display);
int32_t find_string(Library& library, int32_t case_flag, int32_t whole_words,
                    int32_t binary_check, const char* report_path,
                    int32_t is_pattern, int32_t convert, int32_t ask_user,
                    int32_t display);
int32_t find_string_f(Library& library, int32_t case_flag, int32_t whole_words,
                      int32_t binary_check, const char* report_path,
                      int32_t is_pattern, int32_t convert, int32_t ask_user,
                      const char* list_path, const char* summary_path,
                      int32_t display);
int32_t find_excluded_area(Library& library, int32_t case_flag,
                           int32_t whole_words, int32_t binary_check,
                           const char* report_path);

}  // namespace zenfo
