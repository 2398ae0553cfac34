// The replace operations, as exported; zenfofr130.h documents them for hosts.
//
// Tested by tests/contract/replace_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

// Arguments that the operations of the family share, in the order in which a
// host passes those it has.
struct ReplaceArguments {
  int32_t case_flag = 0;
  int32_t whole_words = 0;
  int32_t binary_check = 0;
  int32_t ask_user = 0;
  int32_t safe_store = 0;
  int32_t display = 0;
};

// What a block operation puts in.
struct BlockReplacement {
  const char* text = nullptr;
  int32_t edit_mode = 0;
  int32_t use_list = 0;
  int32_t use_pattern = 0;
  int32_t match_index = 0;
  int32_t expand = 0;
};

// How the find strings of pairs are compiled.
struct StringCompilation {
  int32_t is_pattern = 0;
  int32_t convert = 0;  // expands the replace strings, too
};

struct Numbering {
  const char* placeholder = nullptr;
  int32_t first = 0;
  int32_t step = 0;
  int32_t run_on = 0;  // zero: starts again with every rewriting
};

// The two paths of an _f operation.
struct LineFiles {
  const char* list = nullptr;
  const char* summary = nullptr;
};

int32_t replace_block(Library& library, const ReplaceArguments& arguments,
                      const BlockReplacement& replacement);
int32_t replace_block_f(Library& library, const ReplaceArguments& arguments,
                        const BlockReplacement& replacement,
                        const LineFiles& files);
int32_t replace_block_nbr(Library& library, const ReplaceArguments& arguments,
                          const BlockReplacement& replacement,
                          const Numbering& numbering);
int32_t replace_block_nbr_f(Library& library, const ReplaceArguments& arguments,
                            const BlockReplacement& replacement,
                            const Numbering& numbering, const LineFiles& files);
int32_t replace_string(Library& library, const ReplaceArguments& arguments,
                       const StringCompilation& compilation);
int32_t replace_string_f(Library& library, const ReplaceArguments& arguments,
                         const StringCompilation& compilation,
                         const LineFiles& files);
int32_t replace_string_nbr(Library& library, const ReplaceArguments& arguments,
                           const StringCompilation& compilation,
                           const Numbering& numbering);
int32_t replace_string_nbr_f(Library& library,
                             const ReplaceArguments& arguments,
                             const StringCompilation& compilation,
                             const Numbering& numbering,
                             const LineFiles& files);

}  // namespace zenfo
