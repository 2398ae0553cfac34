// Reads character-class definitions into pattern contexts.
//
// The bytes are lines, ended by CR LF, of the form key=value. A "name" line
// begins a class; "inc_chars", "exc_chars", "inc_ranges" and "exc_ranges"
// lines define it. Each context gets its own copies of the classes.
//
// Tested by tests/unit/pattern/class_file_test.cpp
#pragma once

#include <span>
#include <string_view>

#include "pattern/context.h"

namespace zenfo {

// Replaces the user classes of all contexts by those the bytes define. Returns
// 1; -1, with nothing changed, when there are no bytes. Compiled patterns stay
// as they are.
int32_t apply_class_definitions(std::string_view bytes,
                                std::span<PatternContext* const> contexts);

}  // namespace zenfo
