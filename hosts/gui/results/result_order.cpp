#include "gui/results/result_order.h"

#include <algorithm>
#include <compare>
#include <iterator>

#include "shared/system/paths.h"

namespace zenfo::host::gui {
namespace {

// In the order of ResultColumn.
constexpr std::string_view kColumnNames[] = {
    "found", "name", "matches", "folder", "size", "type", "modified", "reason"};

bool is_set(const std::atomic<bool>* stop) {
  return stop != nullptr && stop->load(std::memory_order_relaxed);
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

// Most names are plain letters, and asking the system takes far longer.
std::string folded(std::string_view text) {
  const bool plain = std::none_of(text.begin(), text.end(), [](char c) {
    return static_cast<unsigned char>(c) >= 0x80;
  });
  std::string result = plain ? std::string(text) : without_case(text);
  // Where names of files have case, people still look for them without.
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c | 0x20);
  }
  return result;
}

PathFilter::PathFilter(std::string_view text) : text_(folded(text)) {}

bool PathFilter::takes(std::string_view path) const {
  return empty() || folded(path).find(text_) != std::string::npos;
}

// What a file is sorted by: a number, then a text.
struct Arrangement::Key {
  int64_t number = 0;
  std::string text;
  const Item* item = nullptr;

  std::strong_ordering operator<=>(const Key& other) const {
    if (number != other.number) return number <=> other.number;
    return text <=> other.text;
  }
};

void Arrangement::add(const ResultSet& set, uint32_t file) {
  items_.push_back({file, &set.file(file), &set.reason(file)});
}

Arrangement::Key Arrangement::key_of(const Item& item) const {
  const ResultFile& file = *item.file;
  switch (sort_.column) {
    case ResultColumn::kFound:
      return {item.index, "", &item};
    case ResultColumn::kName:
      return {0, folded(file.name()), &item};
    case ResultColumn::kMatches:
      return {file.count, "", &item};
    case ResultColumn::kFolder:
      return {0, folded(file.folder()), &item};
    case ResultColumn::kSize:
      return {static_cast<int64_t>(file.size), "", &item};
    case ResultColumn::kType:
      return {0, folded(file.extension()), &item};
    case ResultColumn::kModified:
      return {file.modified, "", &item};
    case ResultColumn::kReason:
      return {0, folded(*item.reason), &item};
  }
  return {0, "", &item};
}

void Arrangement::run(const std::atomic<bool>* stop) {
  std::vector<Key> keys;
  for (const Item& item : items_) {
    if (is_set(stop)) return;
    if (filter_.takes(item.file->path)) keys.push_back(key_of(item));
  }
  std::sort(keys.begin(), keys.end(), [&](const Key& a, const Key& b) {
    const std::strong_ordering order = sort_.descending ? b <=> a : a <=> b;
    if (order != 0) return order < 0;
    const auto paths = a.item->file->path <=> b.item->file->path;
    return paths != 0 ? paths < 0 : a.item->index < b.item->index;
  });
  order_.reserve(keys.size());
  for (const Key& key : keys) order_.push_back(key.item->index);
}

void sort_files(const ResultSet& set, ResultSort sort,
                std::vector<uint32_t>& files) {
  Arrangement arrangement(sort, PathFilter());
  for (const uint32_t file : files) arrangement.add(set, file);
  arrangement.run();
  files = arrangement.order();
}

}  // namespace zenfo::host::gui
