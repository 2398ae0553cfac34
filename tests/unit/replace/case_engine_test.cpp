#include "replace/case_engine.h"

#include <gtest/gtest.h>

#include <string>

#include "unit/replace/engine_support.h"

namespace zenfo {
namespace {

using namespace std::string_literals;

class CaseEngineTest : public testing::Test, protected replace_test::Engine {
 protected:
  int32_t change(bool upper) {
    return change_case(context, path.c_str(), upper);
  }
};

TEST_F(CaseEngineTest, ChangesAsciiLettersOfMatchesOnly) {
  std::string all, upper, lower;
  for (int byte = 1; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    all += c;
    upper += c >= 'a' && c <= 'z' ? static_cast<char>(c - 32) : c;
    lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
  }
  set("aA" + all + "aA", {{2, 255}});
  EXPECT_EQ(change(true), 1);
  EXPECT_EQ(written(), "aA" + upper + "aA");
  EXPECT_EQ(change(false), 1);
  EXPECT_EQ(written(), "aA" + lower + "aA");
}

TEST_F(CaseEngineTest, KeepsTheWholeTextAndStopsAtTheNulOfAMatch) {
  set("a\0bc\0d\0"s, {{0, 1}, {3, 3}});
  EXPECT_EQ(change(true), 2);
  EXPECT_EQ(written(), "A\0bC\0d\0"s);
}

TEST_F(CaseEngineTest, PassesOverDeselectedMatches) {
  set("abc", {{0, 1}, {1, 1}, {2, 1}});
  match(1).state = 0;
  EXPECT_EQ(change(true), 2);
  EXPECT_EQ(written(), "AbC");
}

TEST_F(CaseEngineTest, FailsWithoutPathOrText) {
  const std::string before = written();
  set("", {});
  EXPECT_EQ(change(true), -1);
  EXPECT_EQ(written(), before);
  set("a", {{0, 1}});
  EXPECT_EQ(change_case(context, nullptr, true), -1);
  EXPECT_EQ(change_case(context, "", true), -1);
  EXPECT_EQ(change_case(context, folder.path("no/out").c_str(), true), -1);
  EXPECT_EQ(change_case(context, "/dev/full", true), -1);
}

TEST_F(CaseEngineTest, AnInterruptEndsIt) {
  set("ab", {{0, 1}, {1, 1}});
  search_counters() = {};
  context.set_poll_interval(1);
  context.set_interrupt_hook([](void*) { return 1; });
  EXPECT_EQ(change(true), -1);
}

}  // namespace
}  // namespace zenfo
