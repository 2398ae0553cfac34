// Loads the files of a run, the next ones ahead of their turn.
//
// What was read ahead is used only where loading the file now would give the
// same bytes: a file that the run writes itself is loaded at its turn, and so
// is one that a callback of the host may have changed. Whatever cannot be read
// ahead is loaded at its turn too, so failures and calls of the host are the
// same as without.
//
// Tested by tests/contract/read_ahead_test.cpp,
// tests/unit/search/read_ahead_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "files/file_content.h"
#include "files/preloader.h"
#include "search/file_source.h"

namespace zenfo {

// How many threads a run may use, the host's included: what the environment
// variable ZENFO_THREADS says, or else as many as there are processors; 1 to 8.
size_t chosen_threads();
// The same for a text of the variable and a number of processors.
size_t parse_threads(std::string_view text, size_t processors);

class ReadAhead {
 public:
  explicit ReadAhead(FileContent& content) : content_(content) {}

  // A file that the run writes, now or later; null and empty paths are skipped.
  void add_output(const char* path);
  // An output may exist now that did not before.
  void look_at_outputs();

  // Makes the work that counts the matches of files ahead, for this many
  // threads. Only where nobody can look at a file that is searched: then files
  // are counted instead of loaded.
  using MakeWork = std::function<std::unique_ptr<FileWork>(size_t threads)>;
  void count_ahead(MakeWork make_work) { make_work_ = std::move(make_work); }

  // Loads the file that the source gave last. The length, or -1, as
  // load_file_content answers.
  int32_t load(const SharedText& path, FileSource& source);
  // The number of matches when that file was counted instead.
  const std::optional<int32_t>& counted() const { return counted_; }

 private:
  bool start(FileSource& source);
  PreloadedFile* next(const SharedText& path);
  void add_upcoming(FileSource& source);
  bool is_as_read(const PreloadedFile& file);
  bool is_output(const platform::FileVersion& version) const;
  int32_t load_now(const char* path);

  FileContent& content_;
  platform::NearbyFolder nearby_;
  std::vector<std::string> outputs_;
  std::vector<platform::FileVersion> output_versions_;  // of those that exist
  MakeWork make_work_;
  std::optional<int32_t> counted_;
  bool tried_ = false;
  std::optional<Preloader> loader_;
};

}  // namespace zenfo
