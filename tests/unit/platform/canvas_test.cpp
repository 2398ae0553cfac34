#include "platform/canvas.h"

#include <gtest/gtest.h>

namespace zenfo::platform {
namespace {

TEST(Canvas, OpensNoWindow) {
  int window = 0;
  EXPECT_EQ(open_window(&window), nullptr);
  EXPECT_EQ(open_window(nullptr), nullptr);
}

TEST(Canvas, HasTheUsualSystemColours) {
  EXPECT_EQ(system_colour(SystemColour::kWindow), 0xFFFFFFu);
  EXPECT_EQ(system_colour(SystemColour::kWindowText), 0u);
  EXPECT_EQ(system_colour(SystemColour::kGrayText), 0x6D6D6Du);
  EXPECT_EQ(system_colour(SystemColour::kInfoBackground), 0xE1FFFFu);
}

}  // namespace
}  // namespace zenfo::platform
