// Which bytes are text in JSON, and the form of all others.
#include "shared/text/json_text.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

namespace zenfo::host {
namespace {

TEST(IsUtf8, KnowsWellFormedSequences) {
  for (const char* text :
       {"", "abc", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80",
        "\xED\x9F\xBF", "\xEE\x80\x80", "\xEF\xBF\xBF", "\xF0\x90\x80\x80",
        "\xF4\x8F\xBF\xBF", "a\xC3\xA4z"}) {
    EXPECT_TRUE(is_utf8(text)) << text;
  }
}

TEST(IsUtf8, RefusesWhatIsCutOverlongOrNoCharacter) {
  for (const char* text :
       {"\x80", "\xC0\x80", "\xC1\xBF", "\xC2", "\xC2z", "\xE0\x9F\x80",
        "\xED\xA0\x80", "\xE1\x80", "\xF0\x8F\xBF\xBF", "\xF4\x90\x80\x80",
        "\xF5\x80\x80\x80", "\xFF", "ab\xF1\x80\x80"}) {
    EXPECT_FALSE(is_utf8(text)) << text;
  }
}

TEST(Base64, FillsUpTheLastGroup) {
  EXPECT_EQ(base64(""), "");
  EXPECT_EQ(base64("f"), "Zg==");
  EXPECT_EQ(base64("fo"), "Zm8=");
  EXPECT_EQ(base64("foo"), "Zm9v");
  EXPECT_EQ(base64("\xFF\xFE\xFD\xFC"), "//79/A==");
}

TEST(JsonBytes, EscapesWhatJsonWants) {
  using namespace std::string_literals;
  const std::string text = "a\"b\\c\b\f\n\r\t\0\x1F\x7F/\xC3\xA4"s;
  EXPECT_EQ(json_bytes(text),
            "{\"text\":\"a\\\"b\\\\c\\b\\f\\n\\r\\t\\u0000\\u001f\x7F/"
            "\xC3\xA4\"}");
  EXPECT_EQ(nlohmann::json::parse(json_bytes(text))["text"], text);
  EXPECT_EQ(json_bytes("\xFF"), "{\"bytes\":\"/w==\"}");
}

TEST(JsonText, IsAStringUnlessItsBytesAreNoUtf8) {
  EXPECT_EQ(json_text("a\"\n"), R"("a\"\n")");
  EXPECT_EQ(json_text(""), R"("")");
  EXPECT_EQ(json_text("\xFF"), R"({"bytes":"/w=="})");
}

}  // namespace
}  // namespace zenfo::host
