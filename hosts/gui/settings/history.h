// The last entries of fields, the newest first.
//
// Tested by tests/gui/settings/history_test.cpp
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "gui/words/json_value.h"

namespace zenfo::host::gui {

enum class HistoryField { kFind, kFolders, kIncludeNames, kExcludeNames };

class History {
 public:
  static constexpr size_t kMost = 50;  // entries of a field

  const std::vector<std::string>& entries(HistoryField field) const;
  // Puts an entry first; it leaves its old place. Empty ones are not kept.
  void add(HistoryField field, std::string_view entry);
  void remove(HistoryField field, std::string_view entry);
  void clear();

  // While off, add() does nothing.
  bool remembers() const { return remembers_; }
  void set_remembers(bool on) { remembers_ = on; }

  // Writes onto an object and keeps its other members.
  void write(JsonValue& json) const;
  // What has another form is left out.
  void read(const JsonValue& json);

 private:
  std::map<HistoryField, std::vector<std::string>> entries_;
  bool remembers_ = true;
};

}  // namespace zenfo::host::gui
