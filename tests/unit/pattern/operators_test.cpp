#include "pattern/operators.h"

#include <gtest/gtest.h>

namespace zenfo {
namespace {

TEST(Operators, HaveTheirDefaults) {
  Operators operators;
  EXPECT_EQ(operators.range_separator, 45);
  EXPECT_EQ(operators.open_bracket, 91);
  EXPECT_EQ(operators.close_bracket, 93);
  EXPECT_EQ(operators.single_quote, 39);
  EXPECT_EQ(operators.double_quote, 34);
  EXPECT_EQ(operators.list_separator, 124);
  EXPECT_EQ(operators.escape, 92);
  EXPECT_EQ(operators.negation_marker, "!");
}

TEST(ControlNames, PlaceTwentyNineRepeatsTheBracketOfTwentySeven) {
  const char* const kNames[] = {"^A", "^B", "^C", "^D",  "^E", "^F", "^G", "^H",
                                "^I", "^J", "^K", "^L",  "^M", "^N", "^O", "^P",
                                "^Q", "^R", "^S", "^T",  "^U", "^V", "^W", "^X",
                                "^Y", "^Z", "^[", "^\\", "^[", "^^", "^_"};
  auto names = default_control_names();
  ASSERT_EQ(names.size(), 31u);
  int brackets = 0;
  for (size_t i = 0; i < names.size(); ++i) {
    EXPECT_EQ(names[i].name, kNames[i]);
    EXPECT_EQ(names[i].code, i + 1);
    EXPECT_NE(names[i].name, "^]");
    brackets += names[i].name == "^[";
  }
  EXPECT_EQ(brackets, 2);
}

TEST(IsEscaped, CountsEscapesDirectlyInFront) {
  EXPECT_FALSE(is_escaped("a", 0, 0, '\\'));
  EXPECT_TRUE(is_escaped(R"(\a)", 1, 0, '\\'));
  EXPECT_FALSE(is_escaped(R"(\\a)", 2, 0, '\\'));
  EXPECT_TRUE(is_escaped(R"(\\a)", 2, 1, '\\'));  // one lies before `from`
  EXPECT_FALSE(is_escaped(R"(\ba)", 2, 0, '\\'));
}

TEST(ConvertCarets, ReplacesNamesThatAreNotEscaped) {
  struct {
    const char* text;
    std::string converted;
  } cases[] = {
      {"^M^J", "\r\n"},
      {R"(\^M)", R"(\^M)"},
      {R"(\\^M)", "\\\\\r"},
      {"^[^]", "\x1B^]"},
      // By code: ^M is converted before ^^ is looked for.
      {"^^M", "^\r"},
      {"^^^", "\x1E^"},
      {"^m", "^m"},
      {R"(^\x)", "\x1Cx"},
      // ^\ is converted before ^_, so its backslash does not escape ^_.
      {R"(^\^_)", "\x1C\x1F"},
      // ^M is escaped when its turn comes, ^\ is converted later.
      {R"(^\^M)", "\x1C^M"},
      {"", ""},
  };
  auto names = default_control_names();
  for (const auto& one : cases) {
    EXPECT_EQ(convert_carets(one.text, names, '\\'), one.converted) << one.text;
  }
}

TEST(ConvertCarets, NoNameYieldsCodeTwentyNine) {
  auto names = default_control_names();
  std::string all;
  for (int c = 0x40; c < 0x60; ++c) all += {'^', static_cast<char>(c)};
  std::string converted = convert_carets(all, names, '\\');
  for (char code = 1; code < 32; ++code) {
    EXPECT_EQ(converted.find(code) != std::string::npos, code != 29) << +code;
  }
}

TEST(RemoveEscapes, DropsEachAndKeepsWhatFollows) {
  EXPECT_EQ(remove_escapes(R"(a\b\\c\)", '\\'), R"(ab\c)");
  EXPECT_EQ(remove_escapes(R"(\\\\)", '\\'), R"(\\)");
  EXPECT_EQ(remove_escapes(R"(\)", '\\'), "");
}

}  // namespace
}  // namespace zenfo
