#include "gui/words/json_value.h"

#include <algorithm>
#include <nlohmann/json.hpp>

namespace zenfo::host::gui {
namespace {

using Json = nlohmann::ordered_json;

// Deep enough for anything sensible, and shallow enough for the stack.
constexpr int kDeepest = 200;

JsonValue from_library(const Json& json) {
  switch (json.type()) {
    case Json::value_t::boolean:
      return json.get<bool>();
    case Json::value_t::number_integer:
      return json.get<int64_t>();
    case Json::value_t::number_unsigned: {
      const auto number = json.get<uint64_t>();
      if (number > uint64_t{INT64_MAX}) return static_cast<double>(number);
      return static_cast<int64_t>(number);
    }
    case Json::value_t::number_float:
      return json.get<double>();
    case Json::value_t::string:
      return json.get<std::string>();
    case Json::value_t::array: {
      JsonValue::Array array;
      for (const Json& element : json) array.push_back(from_library(element));
      return array;
    }
    case Json::value_t::object: {
      JsonValue::Object object;
      for (const auto& [name, value] : json.items()) {
        object.emplace_back(name, from_library(value));
      }
      return object;
    }
    default:
      return {};
  }
}

Json to_library(const JsonValue& value) {
  if (const bool* boolean = value.boolean()) return *boolean;
  if (const int64_t* number = value.integer()) return *number;
  if (const std::string* text = value.text()) return *text;
  if (const JsonValue::Array* array = value.array()) {
    Json json = Json::array();
    for (const JsonValue& element : *array) json.push_back(to_library(element));
    return json;
  }
  if (const JsonValue::Object* object = value.object()) {
    Json json = Json::object();
    for (const auto& [name, member] : *object) json[name] = to_library(member);
    return json;
  }
  if (const auto number = value.number()) return *number;
  return nullptr;
}

// "line 2, column 5" of an offset that counts from 1.
std::string place_of(std::string_view text, size_t offset) {
  const std::string_view before =
      text.substr(0, std::min(text.size(), offset > 0 ? offset - 1 : 0));
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const size_t start = before.rfind('\n') + 1;  // 0 without one
  return "line " + std::to_string(lines + 1) + ", column " +
         std::to_string(before.size() - start + 1);
}

}  // namespace

std::optional<double> JsonValue::number() const {
  if (const int64_t* whole = integer()) return static_cast<double>(*whole);
  const double* number = get<double>();
  return number == nullptr ? std::nullopt : std::optional(*number);
}

const JsonValue* JsonValue::find(std::string_view name) const {
  const Object* members = object();
  if (members == nullptr) return nullptr;
  for (const auto& [key, value] : *members) {
    if (key == name) return &value;
  }
  return nullptr;
}

JsonValue& JsonValue::operator[](std::string_view name) {
  if (object() == nullptr) value_ = Object();
  auto& members = std::get<Object>(value_);
  for (auto& [key, value] : members) {
    if (key == name) return value;
  }
  return members.emplace_back(std::string(name), JsonValue()).second;
}

void JsonValue::erase(std::string_view name) {
  if (object() == nullptr) return;
  std::erase_if(std::get<Object>(value_),
                [&](const Member& member) { return member.first == name; });
}

void JsonValue::push_back(JsonValue value) {
  if (array() == nullptr) value_ = Array();
  std::get<Array>(value_).push_back(std::move(value));
}

std::optional<JsonValue> parse_json(std::string_view text,
                                    std::string* reason) {
  const auto not_too_deep = [](int depth, Json::parse_event_t, Json&) {
    if (depth > kDeepest) throw std::length_error("nested too deeply");
    return true;
  };
  try {
    return from_library(Json::parse(text.begin(), text.end(), not_too_deep));
  } catch (const Json::parse_error& error) {
    *reason = "is no JSON at " + place_of(text, error.byte);
  } catch (const std::length_error& error) {
    *reason = error.what();
  }
  return std::nullopt;
}

std::string format_json(const JsonValue& value, JsonForm form) {
  const int indent = form == JsonForm::kIndented ? 2 : -1;
  return to_library(value).dump(indent, ' ', false,
                                Json::error_handler_t::replace);
}

}  // namespace zenfo::host::gui
