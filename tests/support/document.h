// The documents of docs/, whose fenced blocks are tested examples.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "support/temp_folder.h"

namespace zenfo::test {

// Reads a file of the source tree by its path from the root.
inline std::string read_source(const std::string& path) {
  return read_file(ZENFO_SOURCE_FOLDER "/" + path);
}

struct Block {
  size_t line = 0;  // of its first line, from 1
  std::string body;
};

// The fenced blocks of a document with this mark.
inline std::vector<Block> fenced_blocks(const std::string& path,
                                        const std::string& mark) {
  std::vector<Block> blocks;
  std::istringstream document(read_source(path));
  std::string line;
  bool inside = false;
  for (size_t number = 1; std::getline(document, line); ++number) {
    if (inside && line == "```") {
      inside = false;
    } else if (inside) {
      blocks.back().body += line + '\n';
    } else if (line == "```" + mark) {
      inside = true;
      blocks.push_back({number + 1, ""});
    }
  }
  EXPECT_FALSE(inside) << path << " ends inside a block";
  return blocks;
}

// Replaces "<CR>", "<LF>" and "<TAB>" by their bytes.
inline std::string with_bytes(std::string text) {
  for (const auto& [name, byte] : {std::pair<std::string, char>{"<CR>", '\r'},
                                   {"<LF>", '\n'},
                                   {"<TAB>", '\t'}}) {
    for (size_t at; (at = text.find(name)) != std::string::npos;) {
      text.replace(at, name.size(), 1, byte);
    }
  }
  return text;
}

}  // namespace zenfo::test
