// What a search looks for, its compilation into the library, and its run.
//
// One text is compiled as the library's find pattern; several become string
// pairs, searched for one after the other in each file.
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

// A text that must stand beside a match, or beside an area.
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
  // In place of the texts: from the first to the second.
  std::optional<std::pair<std::string, std::string>> between;
  bool is_pattern = false;
  bool caret = false;  // caret names mean control characters
  Marker start;
  Marker end;
  Areas areas;
  std::string classes;  // a file of character classes
  bool ignore_case = false;
  bool whole_words = false;
  std::string report;
};

// Both below make one pattern of several texts where they can.

// Makes every match take the rest of its line with it, unseen, so that the
// matches are as many as the lines they are in. False, and nothing is changed,
// where a match might be empty or cross the end of a line, or its surroundings
// matter.
bool search_once_a_line(SearchOptions& options);
// Makes the first match take what is behind it too, so that as good as nothing
// follows: for those who only want to know whether there is one. False, and
// nothing is changed, where a match might be empty or its surroundings matter.
bool search_once_a_file(SearchOptions& options);

class Search {
 public:
  Search(Session& session, const SearchOptions& options)
      : session_(session), options_(options) {}

  // Throws Failure for a text that compiles to nothing and for a file of
  // classes or a report that cannot be used.
  void compile();
  // Of a single text, after another search was compiled.
  void compile_again() { compile(options_.texts.front()); }
  // The question comes once for each text of each file.
  bool several_texts() const { return options_.texts.size() > 1; }
  // Runs over the selected files; the number of matches. Without a question
  // lists 4, 6 and 7 tell the results all the same.
  uint32_t run(const Session::Question& question);
  // Runs over the lines of a file; the results are in the summary.
  uint32_t run_over_lines(const std::string& list, const std::string& summary);

 private:
  void compile(const std::string& text);
  void compile_areas();
  void enter_texts();

  Session& session_;
  const SearchOptions& options_;
};

// Inside the question: the matches of the file in hand, list 5.
uint32_t matches_in_hand();
Match match_in_hand(uint32_t index);

}  // namespace zenfo::host
