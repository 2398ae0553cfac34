// What a search looks for: its compilation in the library, and its run.
//
// One text becomes the library's find pattern; several become string pairs,
// which are searched for one after the other in each file.
//
// Tested by tests/hosts/shared/search_test.cpp, tests/cli/find_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "shared/session/session.h"
#include "shared/text/found_text.h"

namespace zenfo::host {

// A text that must be directly before or after a match.
struct Marker {
  std::string text;
  bool is_pattern = false;
};

struct Areas {
  std::string pattern;  // empty: the whole file is searched
  bool inside = false;  // else outside
  std::string start;    // literal markers around the pattern
  std::string end;
};

struct SearchOptions {
  std::vector<std::string> texts;
  // Used instead of the texts: matches reach from the first to the second.
  std::optional<std::pair<std::string, std::string>> between;
  bool is_pattern = false;
  bool caret = false;  // caret names, such as ^M, mean control characters
  Marker start;
  Marker end;
  Areas areas;
  std::string classes;  // a file of character classes
  bool ignore_case = false;
  bool whole_words = false;
  std::string report;
};

// The two functions below combine several texts into one pattern if possible.

// Extends every match, invisibly, to the end of its line, so that the number of
// matches equals the number of lines with matches. False, without a change, if
// a match might be empty or span lines, or if its surroundings matter.
bool search_once_a_line(SearchOptions& options);
// Extends the first match over all that follows it, or nearly all, for callers
// who only want to know whether there is a match. False, without a change, if a
// match might be empty or its surroundings matter.
bool search_once_a_file(SearchOptions& options);

class Search {
 public:
  Search(Session& session, const SearchOptions& options)
      : session_(session), options_(options) {}

  // Throws Failure for a text that compiles to nothing and for a file of
  // classes or a report that cannot be used.
  void compile();
  // Compiles the single text again after another search was compiled.
  void compile_again() { compile(options_.texts.front()); }
  // Whether there are several texts: the question is then asked for each text
  // in each file.
  bool several_texts() const { return options_.texts.size() > 1; }
  // Searches the selected files and returns the number of matches. Without a
  // question the results are still in lists 4, 6 and 7.
  uint32_t run(const Session::Question& question);
  // Appends the matches of the file in hand, list 5, at most this many. To be
  // called inside the question.
  void append_matches(std::vector<Match>& matches,
                      uint32_t most = UINT32_MAX) const;
  // Searches the files that the lines of `list` name; the results are written
  // to `summary`.
  uint32_t run_over_lines(const std::string& list, const std::string& summary);

 private:
  bool matches_are_equally_long() const;
  bool surely_compiles(const std::string& text) const;
  void compile(const std::string& text);
  void compile_areas();
  void enter_texts();

  Session& session_;
  const SearchOptions& options_;
  std::string end_;  // the end marker, as compiled
};

// The matches of the file in hand, list 5. To be called inside the question.
uint32_t matches_in_hand();
Match match_in_hand(uint32_t index);
// The areas of its pattern in the file in hand, list 9. Likewise.
std::vector<Match> areas_in_hand();

}  // namespace zenfo::host
