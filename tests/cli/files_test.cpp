// zenfo files: sorted lists, saved lists and exports, from end to end.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "cli/process.h"
#include "cli/results.h"
#include "support/temp_folder.h"

namespace zenfo::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class Files : public ::testing::Test {
 protected:
  Outcome run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "files");
    return run_zenfo(std::move(arguments), folder_.path());
  }
  void age(const std::string& name, int hours) const {
    const std::string path = folder_.path(name);
    std::filesystem::last_write_time(
        path,
        std::filesystem::last_write_time(path) - std::chrono::hours(hours));
  }
  void set_read_only(const std::string& name, bool on) const {
    std::filesystem::permissions(folder_.path(name),
                                 std::filesystem::perms(on ? 0444 : 0644));
  }
  Outcome refusal(const std::string& message) const {
    return {"", "zenfo: " + message + "; see 'zenfo help files'\n", 2};
  }

  TempFolder folder_;
};

// Each key sorts these three differently.
class SortedFiles : public Files {
 protected:
  SortedFiles() {
    folder_.file("m/Bee.txt", "333");
    folder_.file("n/ant.png", "22");
    folder_.file("k/cat.c", "1");
    age("m/Bee.txt", 2);
    age("n/ant.png", 1);
    age("k/cat.c", 3);
    set_read_only("k/cat.c", true);
    set_read_only("n/ant.png", true);
  }
  ~SortedFiles() override {
    for (const char* name : {"k/cat.c", "n/ant.png"}) {
      set_read_only(name, false);
    }
  }

  std::vector<std::string> sorted_by(const std::string& key,
                                     bool reverse = false) const {
    std::vector<std::string> arguments = {"m", "n", "k", "--sort", key};
    if (reverse) arguments.push_back("--reverse");
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
    return split_lines(outcome.out);
  }
};

TEST_F(SortedFiles, TakeTheOrderOfEachKey) {
  struct Case {
    const char* key;
    std::vector<std::string> order;
  };
  const Case cases[] = {
      {"name", {"n/ant.png", "m/Bee.txt", "k/cat.c"}},
      {"folder", {"k/cat.c", "m/Bee.txt", "n/ant.png"}},
      {"path", {"k/cat.c", "m/Bee.txt", "n/ant.png"}},
      {"size", {"k/cat.c", "n/ant.png", "m/Bee.txt"}},
      {"modified", {"k/cat.c", "m/Bee.txt", "n/ant.png"}},
      {"all", {"n/ant.png", "m/Bee.txt", "k/cat.c"}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.key);
    std::vector<std::string> order = split_lines(lines(c.order));
    EXPECT_EQ(sorted_by(c.key), order);
    std::reverse(order.begin(), order.end());
    EXPECT_EQ(sorted_by(c.key, true), order);
  }
}

// The test cannot choose these facts.
TEST_F(SortedFiles, TakeTheOrderOfWhatTheSystemSays) {
  const auto column = [&](const std::string& key) {
    std::vector<std::string> values;
    for (const auto& line : json_lines(
             run({"m", "n", "k", "--json", "--sort", key, "--columns", key})
                 .out)) {
      std::string value = line[key];
      if (value.size() > 10 && value[2] == '/') {  // dd/mm/yyyy
        value = value.substr(6, 4) + value.substr(3, 2) + value.substr(0, 2) +
                value.substr(10);
      }
      for (char& c : value) {
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
      }
      values.push_back(value);
    }
    return values;
  };
  for (const std::string key : {"type", "created", "accessed"}) {
    const auto values = column(key);
    EXPECT_EQ(values.size(), 3u) << key;
    EXPECT_TRUE(std::is_sorted(values.begin(), values.end())) << key;
  }
}

// The system decides which attribute bits files have, so the writable one may
// be first or last.
TEST_F(SortedFiles, PutAttributesInOrder) {
  std::vector<std::string> order = sorted_by("attributes");
  ASSERT_EQ(order.size(), 3u);
  EXPECT_NE(order[1], own("m/Bee.txt"));
  std::vector<std::string> other = sorted_by("attributes", true);
  EXPECT_EQ(order.front() == own("m/Bee.txt"),
            other.back() == own("m/Bee.txt"));
}

// Compares with a sort in the test, with more files than any single step
// handles.
TEST_F(Files, SortsManyNames) {
  std::mt19937 random(7);
  std::vector<std::string> names;
  for (int i = 0; i < 300; ++i) {
    names.push_back("f" + std::to_string(random()) + "_" + std::to_string(i));
    folder_.file(names.back(), "");
  }
  std::sort(names.begin(), names.end());
  EXPECT_EQ(run({"--sort", "name"}), (Outcome{lines(names), "", 0}));
  std::reverse(names.begin(), names.end());
  EXPECT_EQ(run({"--sort", "name", "--reverse"}),
            (Outcome{lines(names), "", 0}));
}

TEST_F(SortedFiles, KeepFormsAndTotals) {
  EXPECT_EQ(
      run({"-r", ".", "--sort", "size", "--columns", "size,name", "--total"}),
      (Outcome{"1 B  cat.c\n2 B  ant.png\n3 B  Bee.txt\n"
               "3 files, 6 Bytes\n",
               "", 0}));
  using namespace std::string_literals;
  EXPECT_EQ(run({"-0", "--sort", "size", "--columns", "name,size"}),
            (Outcome{"cat.c\t1 B\0ant.png\t2 B\0Bee.txt\t3 B\0"s, "", 0}));
  EXPECT_EQ(run({"-0", "--sort", "size", "--columns", "size", "--total"}),
            (Outcome{"1 B\0002 B\0003 B\0003 files, 6 Bytes\0"s, "", 0}));
  EXPECT_EQ(run({"--sort", "size", "--columns", "size", "--total"}),
            (Outcome{"1 B\n2 B\n3 B\n3 files, 6 Bytes\n", "", 0}));
}

// A sort mixes paths written with "./" and without.
TEST_F(Files, SortedKeepTheirPathsAsTheyWereWritten) {
  for (const char* name : {"a.c", "b.c", "c.h", "sub/d.h"}) {
    folder_.file(name, "");
  }
  EXPECT_EQ(run({own("./sub"), "*.h", own("./a.c"), "b.c", "--sort", "name"}),
            (Outcome{lines({"./a.c", "b.c", "c.h", "./sub/d.h"}), "", 0}));
}

TEST_F(Files, SortedNameAFileOnceThoughTwoPatternsIncludeIt) {
  for (const char* name : {"b.txt", "a.txt", "a.c"}) folder_.file(name, "x");
  EXPECT_EQ(run({"--include", "a.*", "--include", "*.txt", "--sort", "path",
                 "--total"}),
            (Outcome{"a.c\na.txt\nb.txt\n3 files, 3 Bytes\n", "", 0}));
}

TEST_F(Files, SortsListsOfNoneAndOne) {
  EXPECT_EQ(run({"--sort", "name"}), (Outcome{"", "", 0}));
  folder_.file("a", "");
  EXPECT_EQ(run({"--sort", "name"}), (Outcome{"a\n", "", 0}));
}

TEST_F(Files, RefusesWrongSortOptions) {
  EXPECT_EQ(run({"--sort", "colour"}),
            refusal("--sort: no key 'colour' among name, folder, type, "
                    "created, accessed, modified, size, attributes, path, "
                    "all"));
  EXPECT_EQ(run({"--sort", ""}), refusal("--sort: needs a value"));
  EXPECT_EQ(run({"--reverse"}), refusal("--reverse: needs --sort"));
}

// The message takes the names from the table of keys.
TEST_F(Files, ExplainsEveryKeyInTheHelp) {
  std::string names = run({"--sort", "colour"}).err;
  names = names.substr(names.find("among ") + 6);
  names.resize(names.find(';'));
  std::vector<std::string> keys;
  for (size_t end; (end = names.find(", ")) != names.npos;) {
    keys.push_back(names.substr(0, end));
    names.erase(0, end + 2);
  }
  keys.push_back(names);
  EXPECT_EQ(keys.size(), 10u);
  for (const std::string command : {"files", "dups", "compare"}) {
    const std::string help = run_zenfo({"help", command}).out;
    for (const std::string& key : keys) EXPECT_THAT(help, HasSubstr(key));
  }
}

// ---- Saved lists
// -------------------------------------------------------------

TEST_F(Files, SavesItsListInTheOrderShown) {
  folder_.file("b.c", "1");
  folder_.file("sub/a.c", "22");
  folder_.folder("out");
  const Outcome outcome =
      run({"--sort", "name", "--save-list", own("out/list")});
  EXPECT_EQ(outcome, (Outcome{lines({"sub/a.c", "b.c"}), "", 0}));
  EXPECT_EQ(read_file(folder_.path("out/list")),
            lines({"sub/a.c", "b.c"}, "\r\n"));
  EXPECT_EQ(run({"--from-list", own("out/list")}), outcome);
}

TEST_F(Files, SavesEachFileOnceAndAnEmptyListToo) {
  folder_.file("a.c", "");
  run({"--include", "*.c", "--include", "a*", "--save-list", "list"});
  EXPECT_EQ(read_file(folder_.path("list")), "a.c\r\n");
  EXPECT_EQ(run({"--include", "*.none", "--save-list", "list"}),
            (Outcome{"", "", 0}));
  EXPECT_EQ(read_file(folder_.path("list")), "");
  EXPECT_EQ(run({"--from-list", "list"}), (Outcome{"", "", 0}));
}

TEST_F(Files, ShowsTheFilesOfAList) {
  folder_.file("my notes", "123");
  folder_.file("b", "1");
  folder_.file("list", "my notes\r\n\r\nb");
  EXPECT_EQ(run({"--from-list", "list", "--columns", "size,name", "--total"}),
            (Outcome{"3 B  my notes\n1 B  b\n2 files, 4 Bytes\n", "", 0}));
  EXPECT_EQ(run({"--from-list", "list", "--sort", "size", "--json"}),
            (Outcome{"{\"path\":\"b\"}\n{\"path\":\"my notes\"}\n", "", 0}));
}

TEST_F(Files, NamesLinesThatAreGoneAndShowsTheRest) {
  folder_.file("a", "1");
  folder_.file("b", "1");
  folder_.file("list", "gone\r\na\r\n" + own("no/file") + "\r\nb\r\n");
  EXPECT_EQ(run({"--from-list", "list", "--total"}),
            (Outcome{"a\nb\n2 files, 2 Bytes\n",
                     "zenfo: gone: no such file or folder\nzenfo: " +
                         own("no/file") + ": no such file or folder\n",
                     2}));
}

TEST_F(Files, NamesALineThatIsTooLongInOneShortLine) {
  folder_.file("a", "");
  folder_.file("list", std::string(100000, 'x') + "\r\na\r\n");
  const Outcome outcome = run({"--from-list", "list"});
  EXPECT_EQ(outcome.out, "a\n");
  EXPECT_EQ(outcome.status, 2);
  EXPECT_THAT(outcome.err, StartsWith("zenfo: xxx"));
  EXPECT_EQ(split_lines(outcome.err).size(), 1u);
  EXPECT_LT(outcome.err.size(), 5000u);
}

TEST_F(Files, TakesLinesLongerThanAnyPathOfAFolder) {
  folder_.file("a", "");
  std::string path;
  while (path.size() < 1000000) path += own("./");
  folder_.file("list", path + "a\r\na\r\n");
  const Outcome outcome = run({"--from-list", "list"});
  EXPECT_THAT(outcome.out, EndsWith("a\n"));
  EXPECT_LT(outcome.err.size(), 5000u);
}

TEST_F(Files, RefusesAListThatIsNone) {
  EXPECT_EQ(run({"--from-list", "list"}),
            (Outcome{"", "zenfo: list: no such file or folder\n", 2}));
  folder_.file("a", "");
  folder_.file("list", "a\na\n");
  EXPECT_EQ(run({"--from-list", "list"}),
            (Outcome{"",
                     "zenfo: list: its lines end in LF, those of a list in "
                     "CR LF\n",
                     2}));
  folder_.folder("sub");
  EXPECT_EQ(run({"--from-list", "sub"}),
            (Outcome{"", "zenfo: sub: cannot be read\n", 2}));
}

TEST_F(Files, RefusesAListTogetherWithPaths) {
  const Outcome refused =
      refusal("--from-list: cannot be combined with a PATH, -r or --include");
  EXPECT_EQ(run({"--from-list", "list", "a"}), refused);
  EXPECT_EQ(run({"--from-list", "list", "-r"}), refused);
  EXPECT_EQ(run({"--from-list", "list", "--include", "*.c"}), refused);
  EXPECT_EQ(run({"--from-list", ""}), refusal("--from-list: needs a value"));
}

TEST_F(Files, ShowsItsListThoughItCannotBeSaved) {
  folder_.file("a", "");
  const std::string nowhere = own("no/list");
  EXPECT_EQ(
      run({"--save-list", nowhere}),
      (Outcome{"a\n", "zenfo: " + nowhere + ": the list cannot be written\n",
               2}));
  EXPECT_EQ(
      run({"--columns", "name", "--export", nowhere}),
      (Outcome{"a\n", "zenfo: " + nowhere + ": the columns cannot be written\n",
               2}));
  EXPECT_EQ(run({"--save-list", ""}), refusal("--save-list: needs a value"));
}

// ---- Exports
// -----------------------------------------------------------------

TEST_F(SortedFiles, AreExportedInOrderColumnsToo) {
  EXPECT_EQ(run({"m", "n", "k", "--sort", "size", "--columns",
                 "size,name,folder", "--export", "out"})
                .status,
            0);
  EXPECT_EQ(read_file(folder_.path("out")),
            "cat.c\tk\t1 B\r\nant.png\tn\t2 B\r\nBee.txt\tm\t3 B\r\n");
}

TEST_F(SortedFiles, AreExportedAsTheyAreShown) {
  const std::vector<std::string> columns = {"name",    "folder",    "type",
                                            "created", "accessed",  "modified",
                                            "size",    "attributes"};
  std::string list;
  for (const std::string& column : columns) {
    list += (list.empty() ? "" : ",") + column;
  }
  const Outcome shown = run({"m", "n", "k", "--columns", list, "--export",
                             "out", "--separator", "<>", "--json"});
  std::string expected;
  for (const auto& line : json_lines(shown.out)) {
    for (const std::string& column : columns) {
      expected +=
          (column == "name" ? "" : "<>") + line[column].get<std::string>();
    }
    expected += "\r\n";
  }
  EXPECT_THAT(expected, StartsWith("Bee.txt<>m<>"));
  EXPECT_EQ(read_file(folder_.path("out")), expected);
}

#ifdef _WIN32
// The prefix allows folders that are too deep for all other calls.
TEST_F(Files, NameAFolderWhosePathIsTooLong) {
  folder_.file("d/a.txt", "");
  std::filesystem::path deep =
      L"\\\\?\\" + std::filesystem::path(folder_.path("d")).native();
  std::string shown = "d";
  std::vector<std::filesystem::path> made;
  for (const char letter : {'x', 'y', 'z'}) {
    deep = deep.native() + L'\\' + std::wstring(100, letter);
    ASSERT_TRUE(std::filesystem::create_directory(deep));
    made.push_back(deep);
    shown += '\\' + std::string(100, letter);
  }
  EXPECT_EQ(run({"-r", "d"}),
            (Outcome{"d\\a.txt\n",
                     "zenfo: " + shown + ": its path is too long\n", 2}));
  for (; !made.empty(); made.pop_back()) std::filesystem::remove(made.back());
}
#endif

TEST_F(Files, RefusesWrongExports) {
  EXPECT_EQ(run({"--export", "out"}),
            refusal("--export: needs --columns without 'path'"));
  EXPECT_EQ(run({"--columns", "name", "--export", "out", "--separator", ""}),
            refusal("--separator: needs a value"));
  EXPECT_EQ(run({"--separator", ";"}), refusal("--separator: needs --export"));
  EXPECT_FALSE(file_exists(folder_.path("out")));
}

}  // namespace
}  // namespace zenfo::test
