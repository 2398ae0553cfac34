#include "undo/safety.h"

#include <gtest/gtest.h>

namespace zenfo {
namespace {

TEST(Safety, IsAListOfWords) {
  struct Case {
    const char* words;
    Safety safety;
  };
  // clang-format off
  const Case cases[] = {
      {"",                    {false, false, false, false}},
      {"sync",                {true,  false, false, false}},
      {"beside",              {false, true,  false, false}},
      {"nolinks",             {false, false, true, false}},
      {"sync,beside,nolinks", {true,  true,  true, false}},
      {"skip",                {false, false, false, true}},
      {"nolinks,sync",        {true,  false, true, false}},
      {",sync,",              {true,  false, false, false}},
      {"later,sync",          {true,  false, false, false}},
      {"Sync",                {false, false, false, false}},
      {"sync beside",         {false, false, false, false}},
  };
  // clang-format on
  for (const Case& c : cases)
    EXPECT_EQ(parse_safety(c.words), c.safety) << c.words;
}

}  // namespace
}  // namespace zenfo
