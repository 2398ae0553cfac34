// A search as data: what the fields of the window say. Texts are UTF-8, as they
// were typed.
//
// Tested by tests/gui/query/query_test.cpp
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gui/words/json_value.h"

namespace zenfo::host::gui {

// Where in a file matches may be.
enum class AreaUse { kEverywhere, kOutside, kInside };

struct AreaChoice {
  AreaUse use = AreaUse::kEverywhere;
  std::string kind;     // one of area_kinds.h; empty: the pattern below
  std::string pattern;  // in the pattern language
  std::string start;    // texts that must be around an area of the pattern
  std::string end;

  bool operator==(const AreaChoice&) const = default;
};

enum class BinaryFiles { kSkip, kSearch };

struct Query {
  std::string text;
  bool match_case = false;
  bool whole_words = false;
  bool is_pattern = false;           // the text is in the pattern language
  bool caret = false;                // ^M means a control character
  std::vector<std::string> folders;  // or files
  bool subfolders = true;
  // Shell patterns for names of files; none: all files.
  std::vector<std::string> include_names;
  // Shell patterns for names of files and folders that are left out.
  std::vector<std::string> exclude_names;
  AreaChoice areas;
  BinaryFiles binary = BinaryFiles::kSkip;

  bool operator==(const Query&) const = default;
};

// The field that a fault is about.
enum class QueryField { kText, kFolders, kIncludeNames, kExcludeNames, kAreas };

struct QueryFault {
  QueryField field;
  std::string reason;  // for people, without a full stop

  bool operator==(const QueryFault&) const = default;
};

// What is wrong with a query, first field first; nothing if it can be run. Does
// not look at the disk: the run reports a folder that is gone, as "not
// searched".
std::vector<QueryFault> faults_of(const Query& query);

// What a user should know about a query without faults: the library knows case
// and words of English letters only.
std::vector<std::string> notes_on(const Query& query);

// Members with the names above; areas are an object, lists are arrays.
JsonValue to_json(const Query& query);
// Missing members get their defaults, unknown ones are ignored. No value, and a
// reason, for a member of another type or with an unknown word.
std::optional<Query> query_from_json(const JsonValue& json,
                                     std::string* reason);

}  // namespace zenfo::host::gui
