#include "gui/text/shown_text.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace zenfo::host::gui {
namespace {

using namespace std::string_view_literals;

ShownText shown(std::string_view bytes, const std::vector<Mark>& marks = {}) {
  return shown_text(bytes, marks, CodePage::western());
}

TEST(ShownText, ShowsUtf8OrElseTheCodePage) {
  EXPECT_EQ(shown("Gr\xC3\xBC\xC3\x9F").text, u"Gr\u00FC\u00DF");
  EXPECT_EQ(shown("Gr\xFC\xDF").text, u"Gr\u00FC\u00DF");
  EXPECT_EQ(shown("\xC3\xBC\xFC").text, u"\u00C3\u00BC\u00FC");
  EXPECT_EQ(shown("a\x81").text, u"a.");
}

TEST(ShownText, ShowsControlCharactersAsPictures) {
  EXPECT_EQ(shown("a\tb\r\x1B\x7F\0"sv).text, u"a\tb\u240D\u241B\u2421\u2400");
}

TEST(ShownText, MarksMoveWithTheirBytes) {
  // "ü€😀x": 2, 3, 4 and 1 bytes; 1, 1, 2 and 1 units.
  const std::string text = "\xC3\xBC\xE2\x82\xAC\xF0\x9F\x98\x80x";
  const auto marks = [&](const std::vector<Mark>& given) {
    return shown(text, given).marks;
  };
  EXPECT_EQ(marks({{0, 2, 7}, {2, 3, 8}, {5, 4, 9}, {9, 1, 1}}),
            std::vector<Mark>({{0, 1, 7}, {1, 1, 8}, {2, 2, 9}, {4, 1, 1}}));
  EXPECT_EQ(marks({{0, 10, 0}}), std::vector<Mark>({{0, 5, 0}}));
  // Inside of characters.
  EXPECT_EQ(marks({{1, 2, 0}}), std::vector<Mark>({{0, 2, 0}}));
  EXPECT_EQ(marks({{6, 1, 0}}), std::vector<Mark>({{2, 2, 0}}));
  // Beyond the end, and over each other.
  EXPECT_EQ(marks({{9, 5, 0}, {10, 1, 1}}), std::vector<Mark>({{4, 1, 0}}));
  EXPECT_EQ(marks({{0, 9, 0}, {2, 3, 1}}),
            std::vector<Mark>({{0, 4, 0}, {1, 1, 1}}));
}

TEST(ShownText, EmptyMarksStayEmpty) {
  EXPECT_EQ(shown("abc", {{1, 0, 0}}).marks, std::vector<Mark>({{1, 0, 0}}));
  EXPECT_EQ(shown("abc", {{0, 0, 0}}).marks, std::vector<Mark>({{0, 0, 0}}));
}

TEST(BytesOfUnits, SaysWhereCharactersBegin) {
  const CodePage& page = CodePage::western();
  using Places = std::vector<uint32_t>;
  EXPECT_EQ(bytes_of_units("", page), Places({0}));
  EXPECT_EQ(bytes_of_units("a\xC3\xA9z", page), Places({0, 1, 3, 4}));
  EXPECT_EQ(bytes_of_units("\xF0\x9F\x98\x80!", page), Places({0, 0, 4, 5}));
  EXPECT_EQ(bytes_of_units("\xE9\x80", page), Places({0, 1, 2}));
}

TEST(PlainText, KeepsControlCharactersButNoZeroByte) {
  const CodePage& page = CodePage::western();
  EXPECT_EQ(plain_text_of(std::string("\x01\t\0\x7F", 4), page),
            u"\x01\t\u2400\x7F");
  EXPECT_EQ(plain_text_of("\xE9\x81", page), u"\u00E9.");
}

}  // namespace
}  // namespace zenfo::host::gui
