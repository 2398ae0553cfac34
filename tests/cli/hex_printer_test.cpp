// zenfo find --hex: rows of a hex dump, exactly.
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "cli/process.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using namespace std::string_literals;

class FindHex : public ::testing::Test {
 protected:
  std::string hex(const std::string& text, const std::string& bytes,
                  std::vector<std::string> more = {}) {
    folder_.file("f", bytes);
    std::vector<std::string> arguments = {"find", "--hex", text, "f"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const Outcome outcome = run_zenfo(std::move(arguments), folder_.path());
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    return outcome.out;
  }
  TempFolder folder_;
};

TEST_F(FindHex, ShowsTheRowOfAMatchWithUnprintableBytesAsPoints) {
  EXPECT_EQ(hex("cat", "a\r\n\x7F\x80 cat"),
            "00000000  61 0D 0A 7F 80 20 63 61 74"
            "                        a...\x80 cat\n");
}

TEST_F(FindHex, ShowsBytesBehindAZeroByte) {
  EXPECT_EQ(hex("cat", "0123456789abcde\0cat"s),
            "00000010  63 61 74"
            "                                          cat\n");
}

TEST_F(FindHex, ShowsAllRowsThatAMatchTouchesOnce) {
  const std::string rows = hex("xyz", std::string(14, '.') + "xyzxyz.");
  EXPECT_EQ(rows,
            "00000000  2E 2E 2E 2E 2E 2E 2E 2E 2E 2E 2E 2E 2E 2E 78 79"
            "   ..............xy\n"
            "00000010  7A 78 79 7A 2E"
            "                                    zxyz.\n");
}

TEST_F(FindHex, PutsALineBetweenRowsThatDoNotFollowEachOther) {
  const std::string rows = hex("cat", "cat" + std::string(45, '-') + "cat");
  EXPECT_EQ(rows,
            "00000000  63 61 74 2D 2D 2D 2D 2D 2D 2D 2D 2D 2D 2D 2D 2D"
            "   cat-------------\n"
            "--\n"
            "00000030  63 61 74"
            "                                          cat\n");
}

TEST_F(FindHex, NamesTheFileAndColoursTheMatchWhenAsked) {
  EXPECT_EQ(hex("b", "abc", {"-H", "--color=always"}),
            "f\n"
            "00000000  61 \x1b[01;31m62\x1b[m 63"
            "                                          a\x1b[01;31mb\x1b[mc\n");
}

TEST_F(FindHex, DoesNotGoWithOtherForms) {
  folder_.file("f", "abc");
  for (const char* other : {"-l", "-c", "--json", "-o", "-0"}) {
    EXPECT_EQ(
        run_zenfo({"find", "--hex", other, "b", "f"}, folder_.path()).status, 2)
        << other;
  }
}

}  // namespace
}  // namespace zenfo::test
