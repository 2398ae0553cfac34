// What the files of a run are searched for: the pattern that the host compiled,
// or the find strings of pairs, in order.
//
// Tested by tests/contract/search_test.cpp,
// tests/contract/search_strings_test.cpp
#pragma once

#include <cstdint>
#include <vector>

#include "containers/item_list.h"
#include "pattern/compiler.h"
#include "pattern/context.h"
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
class PairSearches final : public Searches {
 public:
  PairSearches(ItemList& pairs, PatternContext& context,
               const StringCompilation& compilation)
      : pairs_(pairs),
        context_(context),
        is_pattern_(compilation.is_pattern != 0),
        convert_(compilation.convert != 0) {}

  void rewind() override;
  NextSearch next() override;
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
};

}  // namespace zenfo
