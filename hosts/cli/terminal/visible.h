// Makes bytes from unknown sources safe for a terminal: names of files, their
// text, words of the command line. Escape sequences in them could control the
// terminal, so each byte of a control character is shown as hexadecimal digits.
//
//   an escape, then "[31m"   \x1b[31m
//
// UTF-8 is unchanged except for its own control characters (U+0080 to U+009F).
//
// Tested by tests/cli/visible_test.cpp
#pragma once

#include <string>
#include <string_view>

namespace zenfo::host::cli {

// For lines of text: line feeds, CR LF and tabs stay.
std::string visible_text(std::string_view text);
// For a name or a single line: no control character stays.
std::string visible_name(std::string_view name);
// For JSON, which stays the same document: control characters that JSON allows
// become escapes such as "\u009b".
std::string visible_json(std::string_view json);
// A quick check: true only if visible_text() would leave the text unchanged.
bool is_visible_text(std::string_view text);

}  // namespace zenfo::host::cli
