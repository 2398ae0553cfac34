// Converts between texts and the system's paths, arguments and variables.
//
// Texts are those of the library: bytes on Linux; on Windows the program's
// narrow character set, which its manifest sets to UTF-8. The C and C++
// libraries might use another character set there. So hosts make paths, open
// files and read variables only through these functions; tests/cli/check_paths
// checks that.
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

// Invalid text becomes a path with replacement characters.
std::filesystem::path to_path(std::string_view text);
// Also for a path. to_path() returns a different path if the character set
// lacks a character.
std::string narrow(const NativeText& native);
// Null when it cannot be opened, like std::fopen().
std::FILE* open_file(const std::string& path, const char* mode);
// Opens a file to read. Also null if it is not an ordinary file: a pipe that
// replaced the file is not waited for.
std::FILE* open_ordinary(const std::string& path);
// Returns the same text for all names that the system considers equal but for
// case.
std::string without_case(std::string_view name);
// Empty for a variable that is not set.
std::string environment(const char* name);
// For this process and the library in it.
void set_environment(const char* name, const char* value);

}  // namespace zenfo::host
