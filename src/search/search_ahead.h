// Searches files ahead of their turn and counts their matches, where nobody can
// look: no callback, no question, no report, no areas.
//
// Each thread has a copy of the compiled pattern and a loader of its own,
// without hooks. Whatever is not plain counting is left to the run: files that
// cannot be loaded, or not to the end of the search, that are empty, or that a
// check of their bytes would reject.
//
// Tested by tests/unit/search/search_ahead_test.cpp,
// tests/contract/read_ahead_test.cpp
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "files/file_content.h"
#include "files/preloader.h"
#include "pattern/context.h"
#include "pattern/matcher.h"

namespace zenfo {

// Copies of the elements, as they were when they were compiled.
CompiledPattern copy_of(const CompiledPattern& pattern);

class SearchAhead final : public FileWork {
 public:
  struct Options {
    FindOptions find;
    bool binary_check = false;
  };

  // For the user and this many threads.
  SearchAhead(const CompiledPattern& pattern, const Options& options,
              size_t threads);

  bool handle(PreloadedFile& file, platform::NearbyFolder& folder,
              size_t thread) override;

 private:
  struct Worker {
    FileContent content;
    PatternContext context;
  };

  bool count(Worker& worker, PreloadedFile& file) const;

  Options options_;
  std::vector<std::unique_ptr<Worker>> workers_;  // by thread
};

}  // namespace zenfo
