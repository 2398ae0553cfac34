// Changing the case of matches, as exported; zenfofr130.h documents it for
// hosts.
//
// Tested by tests/contract/case_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

int32_t change_case_i(Library& library, int32_t case_flag, int32_t whole_words,
                      int32_t binary_check, int32_t ask_user,
                      int32_t safe_store, int32_t upper, int32_t display);
int32_t change_case_f(Library& library, int32_t case_flag, int32_t whole_words,
                      int32_t binary_check, int32_t ask_user,
                      int32_t safe_store, const char* list_path,
                      const char* summary_path, int32_t upper, int32_t display);

}  // namespace zenfo
