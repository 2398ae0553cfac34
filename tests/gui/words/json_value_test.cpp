#include "gui/words/json_value.h"

#include <gtest/gtest.h>

#include <string>

namespace zenfo::host::gui {
namespace {

JsonValue parsed(std::string_view text) {
  std::string reason;
  const auto value = parse_json(text, &reason);
  EXPECT_TRUE(value) << reason;
  return value.value_or(JsonValue());
}

std::string reason_for(std::string_view text) {
  std::string reason;
  EXPECT_FALSE(parse_json(text, &reason));
  return reason;
}

TEST(JsonValue, KeepsEverythingInItsOrder) {
  for (const std::string text :
       {"null", "true", "-5", "2.5", "\"a\\nb\"", "[]", "{}",
        "{\"b\":1,\"a\":[{\"z\":null},2.0,\"\"],\"c\":{}}"}) {
    EXPECT_EQ(format_json(parsed(text), JsonForm::kOneLine), text);
  }
  EXPECT_EQ(format_json(parsed("{\"a\":[1]}"), JsonForm::kIndented),
            "{\n  \"a\": [\n    1\n  ]\n}");
}

TEST(JsonValue, TellsTypesApart) {
  const JsonValue value = parsed("{\"n\":1,\"d\":1.5,\"t\":\"x\",\"f\":false}");
  EXPECT_EQ(*value.find("n")->integer(), 1);
  EXPECT_EQ(value.find("n")->number(), 1.0);
  EXPECT_EQ(value.find("n")->text(), nullptr);
  EXPECT_EQ(value.find("d")->integer(), nullptr);
  EXPECT_EQ(value.find("d")->number(), 1.5);
  EXPECT_EQ(*value.find("t")->text(), "x");
  EXPECT_FALSE(*value.find("f")->boolean());
  EXPECT_EQ(value.find("none"), nullptr);
  EXPECT_EQ(value.find("t")->find("none"), nullptr);
  EXPECT_EQ(value.find("t")->number(), std::nullopt);
}

TEST(JsonValue, NumbersTooLargeBecomeDoubles) {
  EXPECT_EQ(*parsed("9223372036854775807").integer(), INT64_MAX);
  EXPECT_EQ(parsed("9223372036854775808").integer(), nullptr);
  EXPECT_EQ(parsed("9223372036854775808").number(), 9223372036854775808.0);
}

TEST(JsonValue, ChangesMembers) {
  JsonValue value;
  value["a"]["b"] = 1;
  value["list"].push_back("x");
  value["a"]["b"] = 2;
  value["gone"] = true;
  value.erase("gone");
  EXPECT_EQ(format_json(value, JsonForm::kOneLine),
            "{\"a\":{\"b\":2},\"list\":[\"x\"]}");
}

TEST(JsonValue, SaysWhereATextIsNoJson) {
  EXPECT_EQ(reason_for("{\n  \"a\": ?}"), "is no JSON at line 2, column 8");
  EXPECT_EQ(reason_for(""), "is no JSON at line 1, column 1");
  EXPECT_EQ(reason_for("{} x"), "is no JSON at line 1, column 4");
  EXPECT_EQ(reason_for(std::string(100'000, '[')), "nested too deeply");
}

TEST(JsonValue, BytesThatAreNoUtf8AreReplaced) {
  EXPECT_EQ(format_json(JsonValue("a\xFF"), JsonForm::kOneLine),
            "\"a\xEF\xBF\xBD\"");
}

}  // namespace
}  // namespace zenfo::host::gui
