// How bytes that could control a terminal are shown on it. A pipe gets them
// unchanged.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "cli/posix/conversation.h"
#include "cli/process.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using testing::HasSubstr;
using testing::Not;

// Red, a bell, and red again with a control character of UTF-8.
constexpr char kEvil[] =
    "\x1B[31m\x07\xC2\x9B"
    "31m";
constexpr char kShown[] = "\\x1b[31m\\x07\\xc2\\x9b31m";

class Terminal : public ::testing::Test {
 protected:
  // Everything that is sent to the terminal.
  std::string shown(const std::vector<std::string>& arguments) const {
    Conversation conversation(arguments, folder_.path(), "");
    const std::string text = conversation.hear("\n\n\n");
    conversation.wait();
    return text;
  }
  Outcome piped(const std::vector<std::string>& arguments) const {
    return run_zenfo(arguments, folder_.path());
  }

  TempFolder folder_;
};

TEST_F(Terminal, IsShownNoEscapeSequencesOfLines) {
  folder_.file("a",
               std::string("plum \xC3\xA4\t") + kEvil + "\nover\rplum\r\n");
  EXPECT_EQ(shown({"find", "--color=never", "plum", "a"}),
            std::string("plum \xC3\xA4\t") + kShown + "\nover\\x0dplum\n");
  EXPECT_EQ(piped({"find", "plum", "a"}).out,
            std::string("plum \xC3\xA4\t") + kEvil + "\nover\rplum\n");
}

TEST_F(Terminal, KeepsTheColoursOfTheCommand) {
  folder_.file("a", std::string(kEvil) + "plum\n");
  EXPECT_EQ(shown({"find", "--color=always", "plum", "a"}),
            std::string(kShown) + "\x1B[01;31mplum\x1B[m\n");
}

TEST_F(Terminal, IsShownNoEscapeSequencesOfNames) {
  const std::string name = std::string(kEvil) + "\n\xC3\xA4";
  const std::string shown_name = std::string(kShown) + "\\x0a\xC3\xA4";
  folder_.file(name, "plum\n");
  folder_.file("same", "plum\n");
  folder_.file("list", folder_.path(name) + "\r\n");
  const std::vector<std::vector<std::string>> commands = {
      {"find", "--color=never", "-l", "plum", name},
      {"find", "--color=never", "-H", "plum", name},
      {"find", "--color=never", "-c", "plum", name, "same"},
      {"find", "--color=never", "--hex", "-H", "plum", name},
      {"files", name},
      {"files", "--columns=path,size", name},
      {"files", "-0", name},
      {"count", name},
      {"dups", "--by=size", name, "same"},
      {"replace", "--dry-run", "plum", "apple", name},
      {"replace", "-y", "plum", "plum2", name},
      {"find", "plum", "gone" + name}};
  for (const std::vector<std::string>& command : commands) {
    const std::string text = shown(command);
    EXPECT_THAT(text, HasSubstr(shown_name)) << testing::PrintToString(command);
    EXPECT_THAT(text, Not(HasSubstr("\x1B")))
        << testing::PrintToString(command);
    EXPECT_THAT(text, Not(HasSubstr("\xC2\x9B")));
  }
}

TEST_F(Terminal, IsShownNoEscapeSequencesOfCommandsToUndo) {
  setenv("XDG_STATE_HOME", folder_.path("state").c_str(), 1);
  folder_.file("a", "plum\n");
  shown({"replace", "-y", "plum", kEvil, "a"});
  EXPECT_THAT(shown({"undo", "--list"}), HasSubstr(kShown));
  EXPECT_THAT(piped({"undo", "--list"}).out, HasSubstr(kEvil));
  unsetenv("XDG_STATE_HOME");
}

TEST_F(Terminal, IsShownAnEscapeSequenceOfAnUnknownOption) {
  EXPECT_THAT(shown({"find", std::string("--") + kEvil}), HasSubstr(kShown));
  EXPECT_THAT(piped({"find", std::string("--") + kEvil}).err, HasSubstr(kEvil));
}

TEST_F(Terminal, IsShownJsonThatMeansTheSame) {
  const std::string text = std::string(kEvil) + "\x7Fplum\n";
  folder_.file("a", text);
  const std::string json = shown({"find", "--json", "plum", "a"});
  EXPECT_THAT(json, Not(HasSubstr("\xC2\x9B")));
  EXPECT_THAT(json, Not(HasSubstr("\x7F")));
  EXPECT_THAT(piped({"find", "--json", "plum", "a"}).out,
              HasSubstr("\xC2\x9B"));
  const std::string second = json.substr(json.find('\n') + 1);
  const auto match = nlohmann::json::parse(second.substr(0, second.find('\n')));
  EXPECT_EQ(match["data"]["lines"]["text"], text);
}

TEST_F(Terminal, IsShownPointsForHighBytesOfAHexDump) {
  folder_.file("a", "plum\x9B\xC3\xA4\n");
  EXPECT_EQ(shown({"find", "--color=never", "--hex", "plum", "a"}),
            "00000000  70 6C 75 6D 9B C3 A4 0A" + std::string(27, ' ') +
                "plum....\n");
}

}  // namespace
}  // namespace zenfo::test
