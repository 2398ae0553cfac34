// What the window keeps between its runs, as JSON.
//
// Members that this version does not know are written back as they were, so an
// older program does not harm the settings of a newer one.
//
// Tested by tests/gui/settings/settings_test.cpp
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "gui/query/query.h"
#include "gui/settings/history.h"
#include "gui/words/json_value.h"

namespace zenfo::host::gui {

enum class Theme { kSystem, kLight, kDark };

// In pixels of 96 dpi. A width of 0: not placed yet.
struct WindowPlace {
  int x = 0;
  int y = 0;
  int width = 0;
  int height = 0;
  bool maximised = false;

  bool operator==(const WindowPlace&) const = default;
};

struct ColumnSetting {
  std::string name;  // of column_name()
  int width = 0;     // in pixels of 96 dpi
  bool shown = true;

  bool operator==(const ColumnSetting&) const = default;
};

struct Settings {
  WindowPlace window;
  // In their order, for each kind of list: "found", "no_match", "not_searched".
  std::map<std::string, std::vector<ColumnSetting>> columns;
  std::string sort_column = "found";
  bool sort_descending = false;
  int splitter_percent = 50;  // of the results
  bool preview_shown = true;
  bool preview_below = false;
  bool more_shown = false;
  Theme theme = Theme::kSystem;
  std::string font;  // of the preview; empty: the program's choice
  int font_size = 10;
  int zoom_percent = 100;
  bool wrap = false;
  std::string editor;  // a command with {file} and {line}; empty: the system's
  std::map<std::string, std::string> editors;  // by file name extension
  std::map<std::string, std::string> keys;     // names of commands to keys
  Query last_query;
  History history;

  JsonValue rest;  // the document as it was read
};

inline constexpr int kSettingsVersion = 1;

// Members of another type, and numbers out of their range, get their defaults.
// Documents of older versions are brought to the present one first.
Settings settings_from_json(JsonValue json);
JsonValue to_json(const Settings& settings);

}  // namespace zenfo::host::gui
