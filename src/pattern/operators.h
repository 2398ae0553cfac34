// What gives pattern text its structure: the operator characters, the names of
// the control characters, escapes.
//
// Tested by tests/unit/pattern/operators_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zenfo {

struct Operators {
  char range_separator = '-';  // between the bounds of a repetition count
  char open_bracket = '[';     // opens a repetition count
  char close_bracket = ']';    // closes it
  char single_quote = '\'';    // on both sides of a character list
  char double_quote = '"';     // on both sides of a string list
  char list_separator = '|';   // between the alternatives of either
  char escape = '\\';          // makes the next character literal
  std::string negation_marker = "!";  // before what it negates
};

struct ControlName {
  std::string name;
  uint8_t code;
};

// Codes 1 to 31 in order, each a caret and a character. Intended: 29 carries
// the name of 27, and no name is a caret and a close bracket.
std::vector<ControlName> default_control_names();

// Whether an odd number of escapes is directly before `position`; bytes below
// `from` are not examined.
bool is_escaped(std::string_view text, size_t position, size_t from,
                char escape);

// Replaces every name that is not escaped by its byte, in one pass for each
// name, in order; the escapes stay.
std::string convert_carets(std::string_view text,
                           const std::vector<ControlName>& names, char escape);

// Drops each escape and keeps what follows it, another escape included.
std::string remove_escapes(std::string_view text, char escape);

}  // namespace zenfo
