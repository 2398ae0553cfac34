// Sizes as texts, one row for each unit. A unit is taken only when the scaled
// value is greater than 1.0, so 1024 bytes read "1024 B".
//
// Tested by tests/unit/files/size_text_test.cpp
#pragma once

#include <cstdint>
#include <string>

namespace zenfo {

// One file's size: "%01.1f KB" or "%01.0f B".
std::string size_text(uint64_t size);
// A total: "%01.02f GB", "MB" or "KB", or "%01.0f B".
std::string short_total_text(double total);
// The same with the byte count: "1.50 KB (1536 Bytes)", or "12 Bytes".
std::string long_total_text(double total);

}  // namespace zenfo
