// What the files of a run are searched for: the pattern that the host compiled,
// or the find strings of pairs, in order.
//
// Tested by tests/contract/search_test.cpp,
// tests/contract/search_strings_test.cpp, tests/contract/many_strings_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "containers/item_list.h"
#include "pattern/compiler.h"
#include "pattern/context.h"
#include "search/string_scan.h"
#include "text/shared_text.h"

namespace zenfo {

// Whether there is another search of the current file.
enum class NextSearch {
  kReady,
  kNone,
  kFailed,  // its pair has no find string, or one that cannot be compiled
};

class Searches {
 public:
  virtual ~Searches() = default;
  // Before the first search of a file.
  virtual void rewind() = 0;
  // Makes the find context ready for the next search.
  virtual NextSearch next() = 0;
  // Called after a search of the current file, whose text it was.
  virtual void searched(std::string_view) {}
  // Whether there is at most one search, whose count is the file's.
  virtual bool single() const = 0;
};

// The pattern that the host compiled.
class CompiledSearch final : public Searches {
 public:
  void rewind() override { done_ = false; }
  NextSearch next() override;
  bool single() const override { return true; }

 private:
  bool done_ = false;
};

// How the find strings of pairs are compiled.
struct StringCompilation {
  int32_t is_pattern = 0;
  int32_t convert = 0;  // expands the replace strings, too
};

// The find string of every selected pair, compiled in turn. The first pairs are
// compiled once for all files; their patterns are kept here while another is in
// the context.
//
// Many plain strings are looked for together when a file has been searched for
// the first of them (scan_files). Strings that do not occur are then left out
// while the host has no callback that could tell, except the last, which stays
// in the context.
class PairSearches final : public Searches {
 public:
  PairSearches(ItemList& pairs, PatternContext& context,
               const StringCompilation& compilation)
      : pairs_(pairs),
        context_(context),
        is_pattern_(compilation.is_pattern != 0),
        convert_(compilation.convert != 0) {}
  ~PairSearches() override { context_.pattern.found_before = {}; }
  PairSearches(const PairSearches&) = delete;
  PairSearches& operator=(const PairSearches&) = delete;

  // For a run that changes no file: lets many strings be looked for together,
  // with this case flag.
  void scan_files(bool case_flag) { scan_case_flag_ = case_flag; }

  void rewind() override;
  NextSearch next() override;
  void searched(std::string_view text) override;
  bool single() const override { return false; }
  // Of the pair whose find string is searched for; may be missing.
  const SharedText& replacement() const { return replacement_; }

 private:
  // A compiled pattern takes a kilobyte or two, and there may be a million
  // pairs.
  static constexpr uint32_t kMostKept = 1000;
  struct Kept {
    SharedText text;  // missing until compiled
    CompiledPattern pattern;
  };

  // Below this, strings are found faster one after the other.
  static constexpr size_t kLeastScanned = 16;

  bool scan_is_current() const;
  void prepare_scan();
  std::vector<StringScan::Placed> plain_strings() const;
  void pass_over_absent();
  void take_from_scan(uint32_t position);

  bool compile(const SharedText& text);
  bool compile_kept(Kept& kept, const SharedText& text);
  void put_aside();

  ItemList& pairs_;
  PatternContext& context_;
  bool is_pattern_;
  bool convert_;
  uint32_t position_ = 0;
  SharedText replacement_;
  std::vector<Kept> kept_;  // by position
  Kept* in_context_ = nullptr;

  std::optional<bool> scan_case_flag_;  // no value: files are not scanned
  std::optional<StringScan> scan_;      // none for few strings
  bool scan_prepared_ = false;
  uint32_t scan_changes_ = 0;       // of the pairs, when it was prepared
  uint32_t scan_fold_version_ = 0;  // of byte_tables, likewise
  std::string_view scanned_;        // text of the current file; null: none yet
};

}  // namespace zenfo
