// Between texts and what the system takes for paths, arguments and variables.
//
// Texts are those of the library: bytes on Linux; on Windows the program's
// narrow character set, which its manifest makes UTF-8. There the standard
// library and the C library would read them in a character set of their own
// choice. So paths are made, files opened and variables read through these
// alone; tests/cli/check_paths tells when they are not.
//
// posix/paths.cpp and win32/paths.cpp are twins.
//
// Tested by tests/hosts/shared/paths_test.cpp
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace zenfo::host {

// Wide on Windows.
using NativeText = std::filesystem::path::string_type;
using NativeChar = std::filesystem::path::value_type;

// What is no text of the character set becomes a path with marks of doubt.
std::filesystem::path to_path(std::string_view text);
// Of a path, too. to_path() gives back another one where the character set
// lacks something.
std::string narrow(const NativeText& native);
// Null when it cannot be opened, as std::fopen().
std::FILE* open_file(const std::string& path, const char* mode);
// For reading. Null for what is not an ordinary file, too: a pipe that took a
// file's place is not waited for.
std::FILE* open_ordinary(const std::string& path);
// The same text for all names that the system takes for the same but for the
// case of their letters.
std::string without_case(std::string_view name);
// Empty for a variable that is not set.
std::string environment(const char* name);
// For this process, and the library in it.
void set_environment(const char* name, const char* value);

}  // namespace zenfo::host
