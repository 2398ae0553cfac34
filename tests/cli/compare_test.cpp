// zenfo compare from end to end.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "cli/process.h"
#include "cli/results.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

// x and y are in both folders, y with different sizes; one and two are in one
// folder each.
class Compare : public ::testing::Test {
 protected:
  Compare() {
    folder_.file("a/x", "1");
    folder_.file("b/X", "1");
    folder_.file("a/y", "22");
    folder_.file("b/y", "333");
    folder_.file("a/one", "55555");
    folder_.file("b/sub/two", "22");
    // Sets both, because a time may be read with less precision.
    const auto time = std::filesystem::last_write_time(folder_.path("a/x"));
    for (const char* name : {"a/x", "b/X"}) {
      std::filesystem::last_write_time(folder_.path(name), time);
    }
  }

  Outcome run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "compare");
    return run_zenfo(std::move(arguments), folder_.path());
  }

  TempFolder folder_;
};

std::string marked(const std::vector<std::string>& a,
                   const std::vector<std::string>& b,
                   const std::string& end = "\n") {
  std::string text;
  for (const std::string& path : a) text += "< " + own(path) + end;
  for (const std::string& path : b) text += "> " + own(path) + end;
  return text;
}

TEST_F(Compare, ShowsWhatBothHoldByName) {
  EXPECT_EQ(run({"a", "b"}),
            (Outcome{marked({"a/x", "a/y"}, {"b/X", "b/y"}), "", 1}));
}

TEST_F(Compare, ShowsWhatTheOtherLacks) {
  EXPECT_EQ(run({"-r", "a", "b", "--differ"}),
            (Outcome{marked({"a/one"}, {"b/sub/two"}), "", 1}));
  EXPECT_EQ(run({"a", "b", "--differ"}),
            (Outcome{marked({"a/one"}, {}), "", 1}));
}

TEST_F(Compare, ComparesByAnyKey) {
  EXPECT_EQ(run({"-r", "a", "b", "--by", "size"}),
            (Outcome{marked({"a/x", "a/y"}, {"b/X", "b/sub/two"}), "", 1}));
  EXPECT_EQ(run({"a", "b", "--by", "all"}),
            (Outcome{marked({"a/x"}, {"b/X"}), "", 1}));
  EXPECT_EQ(run({"a", "b", "--by", "path"}), (Outcome{"", "", 1}));
  EXPECT_EQ(run({"a", "b", "--by", "folder"}), (Outcome{"", "", 1}));
  EXPECT_EQ(run({"a", own("a/*"), "--by", "folder", "--differ"}),
            (Outcome{"", "", 0}));
  for (const std::string key :
       {"type", "created", "accessed", "modified", "attributes"}) {
    EXPECT_EQ(run({"a", "a", "--by", key, "--differ"}), (Outcome{"", "", 0}))
        << key;
  }
}

TEST_F(Compare, TellsWhetherTheyAreTheSame) {
  EXPECT_EQ(run({own("a/x"), "b", "--include", "X"}),
            (Outcome{marked({"a/x"}, {"b/X"}), "", 0}));
  EXPECT_EQ(run({own("a/x"), own("b/X"), "--differ"}), (Outcome{"", "", 0}));
  EXPECT_EQ(run({own("a/x"), own("b/X"), "--differ", "--by", "path"}),
            (Outcome{marked({"a/x"}, {"b/X"}), "", 1}));
}

TEST_F(Compare, TakesPatternsAndPathsAsTheyAreWritten) {
  EXPECT_EQ(run({own("./a"), own("b/?")}),
            (Outcome{marked({"./a/x", "./a/y"}, {"b/X", "b/y"}), "", 1}));
  folder_.file("x", "");
  EXPECT_EQ(run({"?", own("./a")}), (Outcome{marked({"x"}, {"./a/x"}), "", 1}));
}

TEST_F(Compare, TakesEmptyFolders) {
  folder_.folder("none");
  folder_.folder("void");
  EXPECT_EQ(run({"none", "void"}), (Outcome{"", "", 0}));
  EXPECT_EQ(run({"none", "b", "--differ"}),
            (Outcome{marked({}, {"b/X", "b/y"}), "", 1}));
  EXPECT_EQ(run({"b", "none", "--differ"}),
            (Outcome{marked({"b/X", "b/y"}, {}), "", 1}));
}

TEST_F(Compare, ComparesSavedListsByPath) {
  folder_.file("1.list", lines({"a/x", "a/y", "a/one"}, "\r\n"));
  folder_.file("2.list", own("a/Y\r\na/one"));
  folder_.file("a/Y", "");  // a new file only if case matters
  EXPECT_EQ(run({"--lists", "1.list", "2.list"}),
            (Outcome{marked({"a/one", "a/y"}, {"a/one", "a/Y"}), "", 1}));
  EXPECT_EQ(run({"--lists", "1.list", "2.list", "--differ"}),
            (Outcome{marked({"a/x"}, {}), "", 1}));
  EXPECT_EQ(run({"--lists", "1.list", "1.list", "--differ"}),
            (Outcome{"", "", 0}));
}

TEST_F(Compare, NamesLinesThatAreGone) {
  folder_.file("1.list", lines({"a/x", "gone"}, "\r\n"));
  folder_.file("2.list", lines({"a/x"}, "\r\n"));
  EXPECT_EQ(run({"--lists", "1.list", "2.list"}),
            (Outcome{marked({"a/x"}, {"a/x"}),
                     "zenfo: gone: no such file or folder\n", 2}));
}

TEST_F(Compare, WritesForPrograms) {
  EXPECT_EQ(json_lines(run({"-r", "a", "b", "--differ", "--json"}).out),
            (std::vector<nlohmann::json>{
                {{"side", "A"}, {"path", own("a/one")}},
                {{"side", "B"}, {"path", own("b/sub/two")}}}));
  EXPECT_EQ(
      run({"-r0", "a", "b", "--differ"}),
      (Outcome{marked({"a/one"}, {"b/sub/two"}, std::string(1, '\0')), "", 1}));
}

TEST_F(Compare, EndsWhenOneOfThemIsMissing) {
  const Outcome missing{"", "zenfo: nowhere: no such file or folder\n", 2};
  EXPECT_EQ(run({"nowhere", "b", "--differ"}), missing);
  EXPECT_EQ(run({"b", "nowhere", "--differ"}), missing);
  EXPECT_EQ(run({"--lists", "nowhere", "b"}), missing);
}

TEST_F(Compare, RefusesWrongArguments) {
  const auto refusal = [](const std::string& message) {
    return Outcome{"", "zenfo: " + message + "; see 'zenfo help compare'\n", 2};
  };
  const Outcome not_two =
      refusal("compare: needs two things to compare, A and B");
  EXPECT_EQ(run({}), not_two);
  EXPECT_EQ(run({"a"}), not_two);
  EXPECT_EQ(run({"a", "b", "a"}), not_two);
  EXPECT_EQ(run({"a", ""}), refusal("compare: A or B is empty"));
  EXPECT_EQ(run({"a", "b", "--by", "colour"}),
            refusal("--by: no key 'colour' among name, folder, type, created, "
                    "accessed, modified, size, attributes, path, all"));
  EXPECT_EQ(run({"--lists", "-r", "a", "b"}),
            refusal("--lists: cannot be combined with -r or --include"));
}

// Compares with sets of names.
TEST_F(Compare, AgreesWithTheModel) {
  std::mt19937 random(3);
  std::set<std::string> names[2];
  for (int i = 0; i < 300; ++i) {
    const size_t side = random() % 2;
    const std::string name = "n" + std::to_string(random() % 200);
    names[side].insert(name);
    folder_.file((side == 0 ? "l/" : "r/") + name, "");
  }
  std::vector<std::string> common[2];
  std::vector<std::string> other[2];
  for (size_t side = 0; side < 2; ++side) {
    for (const std::string& name : names[side]) {
      auto& list = names[1 - side].contains(name) ? common : other;
      list[side].push_back((side == 0 ? "l/" : "r/") + name);
    }
  }
  EXPECT_GT(common[0].size(), 20u);
  EXPECT_GT(other[0].size(), 20u);
  EXPECT_EQ(run({"l", "r"}), (Outcome{marked(common[0], common[1]), "", 1}));
  EXPECT_EQ(run({"l", "r", "--differ"}),
            (Outcome{marked(other[0], other[1]), "", 1}));
}

}  // namespace
}  // namespace zenfo::test
