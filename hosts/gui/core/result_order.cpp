#include "gui/core/result_order.h"

#include <algorithm>
#include <compare>
#include <iterator>

#include "shared/system/paths.h"

namespace zenfo::host::gui {
namespace {

// In the order of ResultColumn.
constexpr std::string_view kColumnNames[] = {
    "found", "name", "matches", "folder", "size", "type", "modified", "reason"};

// What a file is sorted by: a number, then a text.
struct Key {
  int64_t number = 0;
  std::string text;
  uint32_t file = 0;

  auto operator<=>(const Key&) const = default;
};

Key key_of(const ResultSet& set, uint32_t index, ResultColumn column) {
  const ResultFile& file = set.file(index);
  switch (column) {
    case ResultColumn::kFound:
      return {index, "", index};
    case ResultColumn::kName:
      return {0, folded(file.name()), index};
    case ResultColumn::kMatches:
      return {file.count, "", index};
    case ResultColumn::kFolder:
      return {0, folded(file.folder()), index};
    case ResultColumn::kSize:
      return {static_cast<int64_t>(file.size), "", index};
    case ResultColumn::kType:
      return {0, folded(file.extension()), index};
    case ResultColumn::kModified:
      return {file.modified, "", index};
    case ResultColumn::kReason:
      return {0, folded(set.reason(index)), index};
  }
  return {0, "", index};
}

std::strong_ordering compare(const Key& a, const Key& b) {
  if (a.number != b.number) return a.number <=> b.number;
  return a.text <=> b.text;
}

}  // namespace

std::string_view column_name(ResultColumn column) {
  return kColumnNames[static_cast<size_t>(column)];
}

ResultColumn column_of(std::string_view name) {
  const auto found =
      std::find(std::begin(kColumnNames), std::end(kColumnNames), name);
  if (found == std::end(kColumnNames)) return ResultColumn::kFound;
  return static_cast<ResultColumn>(found - std::begin(kColumnNames));
}

std::string folded(std::string_view text) {
  std::string result = without_case(text);
  // Where names of files have case, people still look for them without.
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c | 0x20);
  }
  return result;
}

void sort_files(const ResultSet& set, ResultSort sort,
                std::vector<uint32_t>& files) {
  std::vector<Key> keys;
  keys.reserve(files.size());
  for (const uint32_t file : files) {
    keys.push_back(key_of(set, file, sort.column));
  }
  std::sort(keys.begin(), keys.end(), [&](const Key& a, const Key& b) {
    const std::strong_ordering order =
        sort.descending ? compare(b, a) : compare(a, b);
    if (order != 0) return order < 0;
    const auto paths = set.file(a.file).path <=> set.file(b.file).path;
    return paths != 0 ? paths < 0 : a.file < b.file;
  });
  for (size_t i = 0; i < files.size(); ++i) files[i] = keys[i].file;
}

PathFilter::PathFilter(std::string_view text) : text_(folded(text)) {}

bool PathFilter::takes(std::string_view path) const {
  return empty() || folded(path).find(text_) != std::string::npos;
}

}  // namespace zenfo::host::gui
