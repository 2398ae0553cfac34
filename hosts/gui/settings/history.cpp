#include "gui/settings/history.h"

#include <algorithm>

namespace zenfo::host::gui {
namespace {

struct FieldName {
  HistoryField field;
  std::string_view name;
};

constexpr FieldName kFields[] = {
    {HistoryField::kFind, "find"},
    {HistoryField::kFolders, "folders"},
    {HistoryField::kIncludeNames, "include_names"},
    {HistoryField::kExcludeNames, "exclude_names"},
};

constexpr std::string_view kRemember = "remember";

}  // namespace

const std::vector<std::string>& History::entries(HistoryField field) const {
  static const std::vector<std::string> none;
  const auto found = entries_.find(field);
  return found == entries_.end() ? none : found->second;
}

void History::add(HistoryField field, std::string_view entry) {
  if (!remembers_ || entry.empty()) return;
  remove(field, entry);
  std::vector<std::string>& entries = entries_[field];
  entries.emplace(entries.begin(), entry);
  if (entries.size() > kMost) entries.resize(kMost);
}

void History::remove(HistoryField field, std::string_view entry) {
  std::erase(entries_[field], entry);
}

void History::clear() { entries_.clear(); }

void History::write(JsonValue& json) const {
  json[kRemember] = remembers_;
  for (const auto& [field, name] : kFields) {
    JsonValue& list = json[name];
    list = JsonValue::Array();
    for (const std::string& entry : entries(field)) list.push_back(entry);
  }
}

void History::read(const JsonValue& json) {
  clear();
  const JsonValue* remember = json.find(kRemember);
  remembers_ = remember == nullptr || remember->boolean() == nullptr ||
               *remember->boolean();
  for (const auto& [field, name] : kFields) {
    const JsonValue* list = json.find(name);
    if (list == nullptr || list->array() == nullptr) continue;
    std::vector<std::string>& entries = entries_[field];
    for (const JsonValue& entry : *list->array()) {
      const std::string* text = entry.text();
      if (text == nullptr || text->empty() || entries.size() == kMost) continue;
      if (std::find(entries.begin(), entries.end(), *text) == entries.end()) {
        entries.push_back(*text);
      }
    }
  }
}

}  // namespace zenfo::host::gui
