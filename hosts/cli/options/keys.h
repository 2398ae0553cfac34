// The keys for sorting and comparing lists and finding duplicates: one table
// from their names to the library's options.
//
// Tested by tests/cli/files_test.cpp, dups_test.cpp, compare_test.cpp
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "cli/options/command_line.h"
#include "shared/session/session.h"

namespace zenfo::host::cli {

// The option of the key that compares paths.
inline constexpr uint32_t kPathOption = 10;

struct Key {
  const char* name;
  uint32_t option;           // of Sort() and CompareLists()
  std::array<int, 2> facts;  // that it compares, 0 for none
};

// "name, folder, ...", for messages.
std::string key_names();
// Both throw Failure for an unknown name; the message mentions the option.
const Key& find_key(const CommandLine& line, const std::string& option,
                    const std::string& name);
// The keys of a list such as "name,size", without repeats.
std::vector<const Key*> find_keys(const CommandLine& line,
                                  const std::string& option,
                                  const std::string& names);

void ask_for(const Key& key, FactOptions& facts);

}  // namespace zenfo::host::cli
