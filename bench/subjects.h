// Shared by the benchmarks: the location of the files made by bench/corpus.py,
// and the paths for lists.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace zenfo::bench {

// $ZENFO_CORPUS, or else the folder of scripts/bench, relative to the root of
// the project.
inline std::filesystem::path corpus() {
  const char* folder = std::getenv("ZENFO_CORPUS");
  return folder != nullptr ? folder : "build/bench/corpus/seed-1";
}

inline constexpr char kNoCorpus[] = "no files to work on: run bench/corpus.py";

// The regular files below a folder, folder by folder as in a file search.
inline std::vector<std::string> files_below(
    const std::filesystem::path& folder) {
  std::vector<std::string> files;
  std::error_code error;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(folder, error)) {
    if (entry.is_regular_file()) files.push_back(entry.path().string());
  }
  return files;
}

// The first `count` lines of the list of paths, or all if there are fewer.
inline std::vector<std::string> read_paths(size_t count) {
  std::ifstream in(corpus() / "paths.txt", std::ios::binary);
  std::vector<std::string> paths;
  std::string line;
  while (paths.size() < count && std::getline(in, line)) {
    line.pop_back();  // the CR
    paths.push_back(std::move(line));
  }
  return paths;
}

}  // namespace zenfo::bench
