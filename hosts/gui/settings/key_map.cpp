#include "gui/settings/key_map.h"

namespace zenfo::host::gui {
namespace {

bool meet(KeyPlace a, KeyPlace b) {
  return a == b || a == KeyPlace::kAnywhere || b == KeyPlace::kAnywhere;
}

}  // namespace

KeyMap::KeyMap(const std::map<std::string, std::string>& changes) {
  for (const Command& row : commands()) keys_.push_back(row.key);
  for (const auto& [name, key_text] : changes) {
    const Command* changed = find_command(name);
    const Key key = key_of(key_text);
    if (changed == nullptr || (key == Key() && !key_text.empty())) continue;
    for (const Command& row : commands()) {
      Key& present = keys_[static_cast<size_t>(&row - commands().data())];
      if (&row == changed) {
        present = key;
      } else if (present == key && meet(row.place, changed->place)) {
        present = {};
      }
    }
  }
}

Key KeyMap::key(CommandId id) const {
  return keys_[static_cast<size_t>(&command(id) - commands().data())];
}

const Command* KeyMap::find(const Key& key, KeyPlace place) const {
  if (key == Key()) return nullptr;
  for (const Command& row : commands()) {
    const Key& present = keys_[static_cast<size_t>(&row - commands().data())];
    if (present == key && meet(row.place, place)) return &row;
  }
  return nullptr;
}

}  // namespace zenfo::host::gui
