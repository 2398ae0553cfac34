// Changes shown as lines.
#include "cli/printing/preview.h"

#include <gtest/gtest.h>

#include <string>

namespace zenfo::test {
namespace {

std::string repeated(const std::string& text, int times) {
  std::string all;
  while (times-- > 0) all += text;
  return all;
}

// The output for these changes. It goes to a stream of the process, so the test
// captures it in a file.
std::string changes(const std::string& before, const std::string& after) {
  ::testing::internal::CaptureStdout();
  {
    host::cli::Output output;
    host::cli::put_changes(output, "p", before, after);
  }
  return ::testing::internal::GetCapturedStdout();
}

struct Case {
  const char* name;
  std::string before;
  std::string after;
  std::string shown;
};

TEST(Preview, ShowsWhatWasRemovedAndAdded) {
  const Case cases[] = {
      {"nothing", "a\nb\n", "a\nb\n", ""},
      {"one line", "a\nb\nc\n", "a\nx\nc\n", "p:2:-b\np:2:+x\n"},
      {"neighbours", "a\nb\nc\n", "x\ny\nc\n",
       "p:1:-a\np:2:-b\np:1:+x\np:2:+y\n"},
      {"apart", "a\nb\nc\n", "x\nb\ny\n", "p:1:-a\np:1:+x\np:3:-c\np:3:+y\n"},
      {"lines gone", "a\nb\nc\nd\n", "a\nd\n", "p:2:-b\np:3:-c\n"},
      {"lines come", "a\nd\n", "a\nb\nc\nd\n", "p:2:+b\np:3:+c\n"},
      {"all gone", "a\nb\n", "", "p:1:-a\np:2:-b\n"},
      {"one into two", "a\nb\nc\n", "a\nx\ny\nc\n", "p:2:-b\np:2:+x\np:3:+y\n"},
      {"no line end", "a\nb", "a\nc", "p:2:-b\np:2:+c\n"},
#ifndef _WIN32  // where the capture loses the CR
      {"line end gone", "a\r\nb\n", "a\nb\n", "p:1:-a\r\np:1:+a\n"},
#endif
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(changes(c.before, c.after), c.shown);
  }
}

// Every line differs and no later lines are equal, so the search for equal
// lines must give up.
TEST(Preview, ComparesLineWithLineWhereNothingIsAlike) {
  const int lines = 3000;
  const std::string shown =
      changes(repeated("a\n", lines), repeated("b\n", lines));
  EXPECT_EQ(shown.size(), 2 * lines * std::string("p:1:-a\n").size() +
                              2 * (90 * 1 + 900 * 2 + 2001 * 3));
}

}  // namespace
}  // namespace zenfo::test
