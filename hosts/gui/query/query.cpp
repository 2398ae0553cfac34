#include "gui/query/query.h"

#include <algorithm>

#include "gui/query/area_kinds.h"
#include "gui/words/strings.h"
#include "shared/system/system.h"

namespace zenfo::host::gui {
namespace {

bool has_zero_byte(std::string_view text) {
  return text.find('\0') != std::string_view::npos;
}

bool has_separator(const std::string& pattern) {
  return pattern.find_first_of("/\\") != std::string::npos;
}

void check_text(const Query& query, std::vector<QueryFault>& faults) {
  if (query.text.empty()) {
    faults.push_back({QueryField::kText, plain_text(Text::kNoText)});
  } else if (has_zero_byte(query.text)) {
    faults.push_back({QueryField::kText, plain_text(Text::kZeroByte)});
  }
}

void check_folders(const Query& query, std::vector<QueryFault>& faults) {
  if (query.folders.empty()) {
    faults.push_back({QueryField::kFolders, plain_text(Text::kNoFolder)});
    return;
  }
  for (const std::string& folder : query.folders) {
    if (folder.empty() || has_zero_byte(folder)) {
      faults.push_back({QueryField::kFolders, plain_text(Text::kNoFolder)});
      return;
    }
  }
}

// Patterns are for names: one with a folder would match nothing. On Linux a "\"
// escapes.
void check_names(const std::vector<std::string>& patterns, QueryField field,
                 std::vector<QueryFault>& faults) {
  for (const std::string& pattern : patterns) {
    const bool with_folder = system::kSeparator == '\\'
                                 ? has_separator(pattern)
                                 : pattern.find('/') != std::string::npos;
    if (with_folder || pattern.empty() || has_zero_byte(pattern)) {
      faults.push_back({field, format(Text::kNameWithFolder, {pattern})});
      return;
    }
  }
}

void check_areas(const AreaChoice& areas, std::vector<QueryFault>& faults) {
  if (areas.use == AreaUse::kEverywhere) return;
  if (areas.kind.empty() && areas.pattern.empty()) {
    faults.push_back({QueryField::kAreas, plain_text(Text::kNoAreas)});
  } else if (!areas.kind.empty() && find_area_kind(areas.kind) == nullptr) {
    faults.push_back(
        {QueryField::kAreas, format(Text::kUnknownAreas, {areas.kind})});
  } else if (areas.kind.empty() &&
             (has_zero_byte(areas.pattern) || has_zero_byte(areas.start) ||
              has_zero_byte(areas.end))) {
    faults.push_back({QueryField::kAreas, plain_text(Text::kZeroByte)});
  }
}

}  // namespace

std::vector<QueryFault> faults_of(const Query& query) {
  std::vector<QueryFault> faults;
  check_text(query, faults);
  check_folders(query, faults);
  check_names(query.include_names, QueryField::kIncludeNames, faults);
  check_names(query.exclude_names, QueryField::kExcludeNames, faults);
  check_areas(query.areas, faults);
  return faults;
}

std::vector<std::string> notes_on(const Query& query) {
  std::vector<std::string> notes;
  const bool english =
      std::all_of(query.text.begin(), query.text.end(),
                  [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (english) return notes;
  if (!query.match_case) notes.push_back(plain_text(Text::kCaseOfEnglish));
  if (query.whole_words) notes.push_back(plain_text(Text::kWordsOfEnglish));
  return notes;
}

}  // namespace zenfo::host::gui
