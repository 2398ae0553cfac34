// The keys in force: those of the table of commands, with the user's changes.
//
// Tested by tests/gui/settings/key_map_test.cpp
#pragma once

#include <map>
#include <string>
#include <vector>

#include "gui/settings/commands.h"

namespace zenfo::host::gui {

class KeyMap {
 public:
  // Names of commands to names of keys, "" for none. Unknown commands and keys
  // are left alone. A key that is given to a command leaves the others that it
  // would collide with.
  explicit KeyMap(const std::map<std::string, std::string>& changes = {});

  Key key(CommandId id) const;
  // Null for a key that means nothing there.
  const Command* find(const Key& key, KeyPlace place) const;

 private:
  std::vector<Key> keys_;  // in the order of commands()
};

}  // namespace zenfo::host::gui
