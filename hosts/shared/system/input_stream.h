// A file to read that closes itself.
//
// Tested by tests/hosts/shared/found_text_test.cpp, tests/cli/replace_test.cpp
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "shared/system/paths.h"

namespace zenfo::host {

struct StreamCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using InputStream = std::unique_ptr<std::FILE, StreamCloser>;

inline InputStream without_buffer(std::FILE* opened) {
  InputStream file(opened);
  if (file != nullptr) std::setvbuf(file.get(), nullptr, _IONBF, 0);
  return file;
}

// Null when the file cannot be opened or is not an ordinary one. It has no
// buffer, for one or two reads in each of very many files.
inline InputStream open_unbuffered(const std::string& path) {
  return without_buffer(open_ordinary(path));
}

}  // namespace zenfo::host
