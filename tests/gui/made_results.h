// Results for tests, made without a search.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "gui/results/result_set.h"
#include "support/temp_folder.h"

namespace zenfo::test {

// "a/b.c" with the system's separators.
inline std::string own_path(std::string path) {
  for (char& c : path) c = c == '/' ? kSeparator : c;
  return path;
}

inline host::gui::FoundFile found_file(std::string path, uint32_t count,
                                       uint64_t size = 0,
                                       int64_t modified = 0) {
  host::gui::FoundFile file;
  file.path = own_path(std::move(path));
  file.size = size;
  file.modified = modified;
  file.count = count;
  for (uint32_t i = 0; i < count; ++i) file.matches.push_back({i * 10, 5});
  return file;
}

inline host::gui::JobNews news_of(
    std::vector<host::gui::FoundFile> found,
    std::vector<host::gui::OtherFile> others = {}) {
  host::gui::JobNews news;
  news.job = 1;
  news.found = std::move(found);
  news.others = std::move(others);
  return news;
}

}  // namespace zenfo::test
