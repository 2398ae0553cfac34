// JSON as a tree that keeps what it does not know: members stay in their order,
// and those that nobody reads are written back. The only part that includes the
// library for JSON is the source.
//
// Tested by tests/gui/words/json_value_test.cpp
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace zenfo::host::gui {

class JsonValue {
 public:
  using Array = std::vector<JsonValue>;
  using Member = std::pair<std::string, JsonValue>;
  using Object = std::vector<Member>;

  JsonValue() = default;  // null
  JsonValue(bool value) : value_(value) {}
  JsonValue(int value) : value_(int64_t{value}) {}
  JsonValue(int64_t value) : value_(value) {}
  JsonValue(double value) : value_(value) {}
  JsonValue(std::string value) : value_(std::move(value)) {}
  JsonValue(const char* value) : value_(std::string(value)) {}
  JsonValue(Array value) : value_(std::move(value)) {}
  JsonValue(Object value) : value_(std::move(value)) {}

  bool is_null() const { return get<std::monostate>() != nullptr; }
  // Null when it is of another type. A whole number is also a double.
  const bool* boolean() const { return get<bool>(); }
  const int64_t* integer() const { return get<int64_t>(); }
  std::optional<double> number() const;
  const std::string* text() const { return get<std::string>(); }
  const Array* array() const { return get<Array>(); }
  const Object* object() const { return get<Object>(); }

  // Null without a member of this name, and for anything but an object.
  const JsonValue* find(std::string_view name) const;
  // The member of this name, added as null if it is missing. Anything but an
  // object becomes an empty one first.
  JsonValue& operator[](std::string_view name);
  void erase(std::string_view name);
  // Anything but an array becomes an empty one first.
  void push_back(JsonValue value);

  bool operator==(const JsonValue&) const = default;

 private:
  template <class Type>
  const Type* get() const {
    return std::get_if<Type>(&value_);
  }

  std::variant<std::monostate, bool, int64_t, double, std::string, Array,
               Object>
      value_;
};

// No value, and a reason with line and column, for a text that is not JSON.
// Whole numbers that 64 bits cannot hold become doubles.
std::optional<JsonValue> parse_json(std::string_view text, std::string* reason);
// On one line, or with each member on its own. Bytes that are not UTF-8 become
// replacement characters.
enum class JsonForm { kOneLine, kIndented };
std::string format_json(const JsonValue& value, JsonForm form);

}  // namespace zenfo::host::gui
