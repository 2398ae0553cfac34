#include "gui/settings/settings.h"

#include <algorithm>
#include <array>
#include <span>

namespace zenfo::host::gui {
namespace {

constexpr std::array<std::string_view, 3> kThemes = {"system", "light", "dark"};

struct Flag {
  std::string_view name;
  bool Settings::*value;
};
constexpr Flag kFlags[] = {
    {"sort_descending", &Settings::sort_descending},
    {"preview_shown", &Settings::preview_shown},
    {"preview_below", &Settings::preview_below},
    {"more_shown", &Settings::more_shown},
    {"wrap", &Settings::wrap},
};

struct Number {
  std::string_view name;
  int Settings::*value;
  int least;
  int most;
};
constexpr Number kNumbers[] = {
    {"splitter_percent", &Settings::splitter_percent, 10, 90},
    {"font_size", &Settings::font_size, 6, 72},
    {"zoom_percent", &Settings::zoom_percent, 25, 500},
};

struct TextMember {
  std::string_view name;
  std::string Settings::*value;
};
constexpr TextMember kTextMembers[] = {
    {"sort_column", &Settings::sort_column},
    {"font", &Settings::font},
    {"editor", &Settings::editor},
};

using Texts = std::map<std::string, std::string>;
struct TextsMember {
  std::string_view name;
  Texts Settings::*value;
};
constexpr TextsMember kMaps[] = {
    {"editors", &Settings::editors},
    {"keys", &Settings::keys},
};

constexpr int kMostPixels = 100'000;

void read(const JsonValue* json, bool& value) {
  if (json != nullptr && json->boolean() != nullptr) value = *json->boolean();
}

void read(const JsonValue* json, std::string& value) {
  if (json != nullptr && json->text() != nullptr) value = *json->text();
}

void read(const JsonValue* json, int least, int most, int& value) {
  if (json == nullptr || json->integer() == nullptr) return;
  const int64_t number = *json->integer();
  if (number >= least && number <= most) value = static_cast<int>(number);
}

void read(const JsonValue* json, Texts& value) {
  if (json == nullptr || json->object() == nullptr) return;
  for (const auto& [name, member] : *json->object()) {
    if (member.text() != nullptr) value[name] = *member.text();
  }
}

WindowPlace read_place(const JsonValue* json) {
  WindowPlace place;
  if (json == nullptr) return place;
  read(json->find("x"), -kMostPixels, kMostPixels, place.x);
  read(json->find("y"), -kMostPixels, kMostPixels, place.y);
  read(json->find("width"), 0, kMostPixels, place.width);
  read(json->find("height"), 0, kMostPixels, place.height);
  read(json->find("maximised"), place.maximised);
  return place;
}

void write_place(const WindowPlace& place, JsonValue& json) {
  json["x"] = place.x;
  json["y"] = place.y;
  json["width"] = place.width;
  json["height"] = place.height;
  json["maximised"] = place.maximised;
}

std::vector<ColumnSetting> read_columns(const JsonValue& json) {
  std::vector<ColumnSetting> columns;
  if (json.array() == nullptr) return columns;
  for (const JsonValue& element : *json.array()) {
    ColumnSetting column;
    read(element.find("name"), column.name);
    read(element.find("width"), 0, kMostPixels, column.width);
    read(element.find("shown"), column.shown);
    if (!column.name.empty()) columns.push_back(column);
  }
  return columns;
}

JsonValue columns_json(const std::vector<ColumnSetting>& columns) {
  JsonValue json = JsonValue::Array();
  for (const ColumnSetting& column : columns) {
    JsonValue element;
    element["name"] = column.name;
    element["width"] = column.width;
    element["shown"] = column.shown;
    json.push_back(element);
  }
  return json;
}

// Changes documents of older versions, one step for each version.
void migrate(JsonValue& json) {
  int version = 0;
  read(json.find("version"), 0, INT32_MAX, version);
  // Version 0 is a file without a version: written by hand, and complete.
  if (version < kSettingsVersion) json["version"] = kSettingsVersion;
}

Theme read_theme(const JsonValue* json) {
  std::string word;
  read(json, word);
  const auto found = std::find(kThemes.begin(), kThemes.end(), word);
  return found == kThemes.end() ? Theme::kSystem
                                : static_cast<Theme>(found - kThemes.begin());
}

}  // namespace

Settings settings_from_json(JsonValue json) {
  migrate(json);
  Settings settings;
  settings.window = read_place(json.find("window"));
  for (const auto& [name, value] : kFlags) {
    read(json.find(name), settings.*value);
  }
  for (const auto& [name, value, least, most] : kNumbers) {
    read(json.find(name), least, most, settings.*value);
  }
  for (const auto& [name, value] : kTextMembers) {
    read(json.find(name), settings.*value);
  }
  for (const auto& [name, value] : kMaps) {
    read(json.find(name), settings.*value);
  }
  settings.theme = read_theme(json.find("theme"));
  const JsonValue* columns = json.find("columns");
  if (columns != nullptr && columns->object() != nullptr) {
    for (const auto& [name, list] : *columns->object()) {
      settings.columns[name] = read_columns(list);
    }
  }
  std::string ignored;
  if (const JsonValue* query = json.find("last_query")) {
    settings.last_query = query_from_json(*query, &ignored).value_or(Query());
  }
  if (const JsonValue* history = json.find("history")) {
    settings.history.read(*history);
  }
  settings.rest = std::move(json);
  return settings;
}

JsonValue to_json(const Settings& settings) {
  JsonValue json = settings.rest;
  // A newer version's number stays: its members do too.
  if (json.find("version") == nullptr) json["version"] = kSettingsVersion;
  write_place(settings.window, json["window"]);
  for (const auto& [name, value] : kFlags) json[name] = settings.*value;
  for (const auto& [name, value, least, most] : kNumbers) {
    json[name] = settings.*value;
  }
  for (const auto& [name, value] : kTextMembers) json[name] = settings.*value;
  for (const auto& [name, value] : kMaps) {
    JsonValue map = JsonValue::Object();
    for (const auto& [key, text] : settings.*value) map[key] = text;
    json[name] = map;
  }
  json["theme"] = std::string(kThemes[static_cast<size_t>(settings.theme)]);
  for (const auto& [name, columns] : settings.columns) {
    json["columns"][name] = columns_json(columns);
  }
  // A query is replaced as a whole, with what this version does not know of it.
  json["last_query"] = to_json(settings.last_query);
  settings.history.write(json["history"]);
  return json;
}

}  // namespace zenfo::host::gui
