#include "gui/words/unicode.h"

#include <gtest/gtest.h>

#include <string>

namespace zenfo::host::gui {
namespace {

TEST(Unicode, ConvertsBothWays) {
  struct Row {
    std::string narrow;
    std::u16string wide;
  };
  const Row rows[] = {{"", u""},
                      {"abc", u"abc"},
                      {"\xC3\xA4", u"\u00E4"},
                      {"\xE2\x82\xAC!", u"\u20AC!"},
                      {"\xF0\x9F\x98\x80", u"\xD83D\xDE00"},
                      {"\xF4\x8F\xBF\xBF", u"\xDBFF\xDFFF"}};
  for (const auto& [narrow, wide] : rows) {
    EXPECT_EQ(to_utf16(narrow), wide);
    EXPECT_EQ(to_utf8(wide), narrow);
  }
}

TEST(Unicode, ReplacesWhatIsInvalid) {
  // A lone byte that goes on, overlong forms, a surrogate, one beyond the last,
  // a character cut at the end.
  for (const std::string bytes : {"\x80", "\xC0", "\xFF"}) {
    EXPECT_EQ(to_utf16(bytes), u"\uFFFD");
  }
  EXPECT_EQ(to_utf16("\xE0\x80\x80"), u"\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(to_utf16("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(to_utf16("\xF4\x90\x80\x80").size(), 4u);
  EXPECT_EQ(to_utf16("a\xE2\x82"), u"a\uFFFD\uFFFD");
  EXPECT_EQ(to_utf8(std::u16string(1, char16_t{0xD800}) + u"a"),
            "\xEF\xBF\xBD"
            "a");
  EXPECT_EQ(to_utf8(std::u16string(1, char16_t{0xDC00})), "\xEF\xBF\xBD");
}

TEST(Unicode, FindsPlacesBetweenCharacters) {
  const std::string text =
      "a\xE2\x82\xAC"
      "b";
  const size_t from[] = {0, 1, 4, 4, 4, 5};
  const size_t until[] = {0, 1, 1, 1, 4, 5};
  for (size_t at = 0; at <= text.size(); ++at) {
    EXPECT_EQ(whole_from(text, at), from[at]) << at;
    EXPECT_EQ(whole_until(text, at), until[at]) << at;
  }
  EXPECT_EQ(whole_from("a\x80\x80\x80\x80", 3), 3u);
}

}  // namespace
}  // namespace zenfo::host::gui
