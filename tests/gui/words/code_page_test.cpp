#include "gui/words/code_page.h"

#include <gtest/gtest.h>

namespace zenfo::host::gui {
namespace {

TEST(CodePage, WesternHasTheCharactersOfWindows) {
  const CodePage& page = CodePage::western();
  EXPECT_EQ(page.at('A'), u'A');
  EXPECT_EQ(page.at('\0'), u'\0');
  EXPECT_EQ(page.at('\x80'), u'\u20AC');
  EXPECT_EQ(page.at('\x81'), u'\0');
  EXPECT_EQ(page.at('\x9F'), u'\u0178');
  EXPECT_EQ(page.at('\xE4'), u'\u00E4');
  EXPECT_EQ(page.at('\xFF'), u'\u00FF');
}

}  // namespace
}  // namespace zenfo::host::gui
