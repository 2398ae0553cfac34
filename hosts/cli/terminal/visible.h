// What a terminal may be shown of bytes that anybody can have chosen: names of
// files, their text, words of the command line. Escape sequences in them could
// do anything to it, so each byte of a control character is shown in
// hexadecimal digits.
//
//   an escape, then "[31m"   \x1b[31m
//
// UTF-8 stays as it is, but for its own control characters (U+0080 to U+009F).
//
// Tested by tests/cli/visible_test.cpp
#pragma once

#include <string>
#include <string_view>

namespace zenfo::host::cli {

// Lines of text: line feeds, CR LF and tabs stay.
std::string visible_text(std::string_view text);
// A name or a single line: nothing of the kind stays.
std::string visible_name(std::string_view name);
// The same document: what JSON leaves as it is becomes "\u009b".
std::string visible_json(std::string_view json);
// Whether visible_text() would change anything.
bool is_visible_text(std::string_view text);

}  // namespace zenfo::host::cli
