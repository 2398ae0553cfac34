// The JSON of query.h, from tables of its members.
#include <array>
#include <span>

#include "gui/query/query.h"

namespace zenfo::host::gui {
namespace {

constexpr std::array<std::string_view, 3> kAreaUses = {"everywhere", "outside",
                                                       "inside"};
constexpr std::array<std::string_view, 2> kBinaryFiles = {"skip", "search"};

template <class Type>
struct Member {
  std::string_view name;
  Type Query::*value;
};

using List = std::vector<std::string>;

constexpr Member<bool> kFlags[] = {{"match_case", &Query::match_case},
                                   {"whole_words", &Query::whole_words},
                                   {"pattern", &Query::is_pattern},
                                   {"caret", &Query::caret},
                                   {"subfolders", &Query::subfolders}};
constexpr Member<List> kLists[] = {{"folders", &Query::folders},
                                   {"include_names", &Query::include_names},
                                   {"exclude_names", &Query::exclude_names}};

struct AreaMember {
  std::string_view name;
  std::string AreaChoice::*value;
};
constexpr AreaMember kAreaTexts[] = {{"kind", &AreaChoice::kind},
                                     {"pattern", &AreaChoice::pattern},
                                     {"start", &AreaChoice::start},
                                     {"end", &AreaChoice::end}};

// Thrown while a query is read.
struct Wrong {
  std::string reason;
};

std::string in_quotes(std::string_view name) {
  return '"' + std::string(name) + '"';
}

void read(const JsonValue& json, std::string_view name, bool& value) {
  const JsonValue* member = json.find(name);
  if (member == nullptr) return;
  if (member->boolean() == nullptr) {
    throw Wrong{in_quotes(name) + " is neither true nor false"};
  }
  value = *member->boolean();
}

void read(const JsonValue& json, std::string_view name, std::string& value) {
  const JsonValue* member = json.find(name);
  if (member == nullptr) return;
  if (member->text() == nullptr) throw Wrong{in_quotes(name) + " is no text"};
  value = *member->text();
}

void read(const JsonValue& json, std::string_view name, List& value) {
  const JsonValue* member = json.find(name);
  if (member == nullptr) return;
  if (member->array() == nullptr) throw Wrong{in_quotes(name) + " is no list"};
  value.clear();
  for (const JsonValue& element : *member->array()) {
    if (element.text() == nullptr) {
      throw Wrong{in_quotes(name) + " is no list of texts"};
    }
    value.push_back(*element.text());
  }
}

template <class Enum>
void read_word(const JsonValue& json, std::string_view name,
               std::span<const std::string_view> words, Enum& value) {
  std::string word(words[static_cast<size_t>(value)]);
  read(json, name, word);
  for (size_t i = 0; i < words.size(); ++i) {
    if (words[i] != word) continue;
    value = static_cast<Enum>(i);
    return;
  }
  throw Wrong{in_quotes(name) + " has the unknown value " + in_quotes(word)};
}

Query read_query(const JsonValue& json) {
  if (json.object() == nullptr) throw Wrong{"is no object"};
  Query query;
  read(json, "text", query.text);
  for (const auto& [name, value] : kFlags) read(json, name, query.*value);
  for (const auto& [name, value] : kLists) read(json, name, query.*value);
  read_word(json, "binary", kBinaryFiles, query.binary);
  if (const JsonValue* areas = json.find("areas")) {
    if (areas->object() == nullptr) throw Wrong{"\"areas\" is no object"};
    read_word(*areas, "use", kAreaUses, query.areas.use);
    for (const auto& [name, value] : kAreaTexts) {
      read(*areas, name, query.areas.*value);
    }
  }
  return query;
}

JsonValue list(const List& texts) {
  return JsonValue::Array(texts.begin(), texts.end());
}

}  // namespace

JsonValue to_json(const Query& query) {
  JsonValue json;
  json["text"] = query.text;
  for (const auto& [name, value] : kFlags) json[name] = query.*value;
  for (const auto& [name, value] : kLists) json[name] = list(query.*value);
  JsonValue& areas = json["areas"];
  areas["use"] = std::string(kAreaUses[static_cast<size_t>(query.areas.use)]);
  for (const auto& [name, value] : kAreaTexts) {
    areas[name] = query.areas.*value;
  }
  json["binary"] = std::string(kBinaryFiles[static_cast<size_t>(query.binary)]);
  return json;
}

std::optional<Query> query_from_json(const JsonValue& json,
                                     std::string* reason) {
  try {
    return read_query(json);
  } catch (const Wrong& wrong) {
    *reason = wrong.reason;
    return std::nullopt;
  }
}

}  // namespace zenfo::host::gui
