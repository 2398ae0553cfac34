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
      {"",                    {false, false, false}},
      {"sync",                {true,  false, false}},
      {"beside",              {false, true,  false}},
      {"nolinks",             {false, false, true}},
      {"sync,beside,nolinks", {true,  true,  true}},
      {"nolinks,sync",        {true,  false, true}},
      {",sync,",              {true,  false, false}},
      {"later,sync",          {true,  false, false}},
      {"Sync",                {false, false, false}},
      {"sync beside",         {false, false, false}},
  };
  // clang-format on
  for (const Case& c : cases)
    EXPECT_EQ(parse_safety(c.words), c.safety) << c.words;
}

}  // namespace
}  // namespace zenfo
