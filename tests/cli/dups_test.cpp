// zenfo dups from end to end.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cctype>
#include <chrono>
#include <filesystem>
#include <map>
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

class Dups : public ::testing::Test {
 protected:
  Outcome run(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), "dups");
    return run_zenfo(std::move(arguments), folder_.path());
  }
  // Also sets it for `file` itself, because a time may be read with less
  // precision.
  void set_time_of(const std::string& file,
                   const std::vector<std::string>& files) const {
    const auto time = std::filesystem::last_write_time(folder_.path(file));
    for (const std::string& name : files) {
      std::filesystem::last_write_time(folder_.path(name), time);
    }
  }

  TempFolder folder_;
};

// Copies in a and b, one with another size in c, one with another time in d.
class Copies : public Dups {
 protected:
  Copies() {
    for (const char* name : {"a/x.txt", "b/X.TXT", "d/x.txt", "a/y", "b/y"}) {
      folder_.file(name, "12");
    }
    folder_.file("c/x.txt", "123");
    folder_.file("c/alone", "1");
    set_time_of("a/x.txt", {"a/x.txt", "b/X.TXT", "c/x.txt", "a/y", "b/y"});
    const std::string other = folder_.path("d/x.txt");
    std::filesystem::last_write_time(
        other, std::filesystem::last_write_time(other) - std::chrono::hours(1));
  }
};

TEST_F(Copies, AreListedInGroups) {
  EXPECT_EQ(run({}), (Outcome{lines({"a/x.txt", "b/X.TXT"}) + "\n" +
                                  lines({"a/y", "b/y"}),
                              "", 0}));
}

TEST_F(Copies, AreListedByAnyKey) {
  EXPECT_EQ(run({"--by", "name"}),
            (Outcome{lines({"a/x.txt", "b/X.TXT", "c/x.txt", "d/x.txt"}) +
                         "\n" + lines({"a/y", "b/y"}),
                     "", 0}));
  EXPECT_EQ(
      run({"--by", "size"}),
      (Outcome{lines({"a/x.txt", "a/y", "b/X.TXT", "b/y", "d/x.txt"}), "", 0}));
  EXPECT_EQ(run({"--by", "modified", "a", "b", "d"}),
            (Outcome{lines({"a/x.txt", "a/y", "b/X.TXT", "b/y"}), "", 0}));
  EXPECT_EQ(run({"--by", "folder", "c", "d"}),
            (Outcome{lines({"c/alone", "c/x.txt"}), "", 0}));
  EXPECT_EQ(run({"--by", "path"}), (Outcome{"", "", 1}));
}

TEST_F(Copies, AreListedByKeysTogether) {
  const Outcome both{
      lines({"a/x.txt", "b/X.TXT", "d/x.txt"}) + "\n" + lines({"a/y", "b/y"}),
      "", 0};
  EXPECT_EQ(run({"--by", "name,size"}), both);
  EXPECT_EQ(run({"--by", "size,name"}), both);
  EXPECT_EQ(run({"--by", "size,name,size"}), both);
  EXPECT_EQ(run({"--by", "name,size,modified"}), run({}));
  EXPECT_EQ(
      run({"--by", "size,folder"}),
      (Outcome{lines({"a/x.txt", "a/y"}) + "\n" + lines({"b/X.TXT", "b/y"}), "",
               0}));
  EXPECT_EQ(run({"--by", "name,path"}), (Outcome{"", "", 1}));
}

TEST_F(Copies, AreWrittenForPrograms) {
  EXPECT_EQ(json_lines(run({"--json"}).out),
            (std::vector<nlohmann::json>{
                {{"paths", {own("a/x.txt"), own("b/X.TXT")}}},
                {{"paths", {own("a/y"), own("b/y")}}}}));
  const std::string end(1, '\0');
  EXPECT_EQ(run({"-0"}), (Outcome{lines({"a/x.txt", "b/X.TXT"}, end) + end +
                                      lines({"a/y", "b/y"}, end) + end,
                                  "", 0}));
}

TEST_F(Copies, AreListedFromASavedList) {
  folder_.file("list", lines({"b/y", "a/y", "c/gone"}, "\r\n"));
  EXPECT_EQ(
      run({"--from-list", "list"}),
      (Outcome{lines({"a/y", "b/y"}),
               "zenfo: " + own("c/gone") + ": no such file or folder\n", 2}));
}

TEST_F(Copies, AreNotTheSameFileByAnotherPath) {
  EXPECT_EQ(run({"a", own("./a"), own("a/x.txt"), own("a/x.txt")}),
            (Outcome{"", "", 1}));
  EXPECT_EQ(
      run({own("./a"), "a", "b", "--by", "name,size", "--include", "y",
           "--include", "*"}),
      (Outcome{lines({"./a/x.txt", "b/X.TXT"}) + "\n" + lines({"./a/y", "b/y"}),
               "", 0}));
}

TEST_F(Dups, AreNoneAmongNoneAndOne) {
  EXPECT_EQ(run({}), (Outcome{"", "", 1}));
  folder_.file("a", "");
  EXPECT_EQ(run({}), (Outcome{"", "", 1}));
  EXPECT_EQ(run({"--json"}), (Outcome{"", "", 1}));
}

TEST_F(Dups, RefusesWrongOptions) {
  const std::string keys =
      " among name, folder, type, created, accessed, modified, size, "
      "attributes, path, all; see 'zenfo help dups'\n";
  EXPECT_EQ(run({"--by", "name,colour"}),
            (Outcome{"", "zenfo: --by: no key 'colour'" + keys, 2}));
  EXPECT_EQ(run({"--by", "name,"}),
            (Outcome{"", "zenfo: --by: no key ''" + keys, 2}));
  EXPECT_EQ(run({"nowhere"}),
            (Outcome{"", "zenfo: nowhere: no such file or folder\n", 2}));
}

// Compares with a plain model: files of few names and sizes in many folders.
TEST_F(Dups, AgreesWithTheModel) {
  struct File {
    std::string path;
    std::string name;
    size_t size;
  };
  std::mt19937 random(11);
  std::vector<File> files;
  for (int i = 0; i < 200; ++i) {
    const std::string name = "name" + std::to_string(random() % 60);
    const size_t size = random() % 8;
    files.push_back({std::to_string(i) + "/" + name, name, size});
    folder_.file(files.back().path, std::string(size, 'x'));
  }
  using Groups = std::set<std::set<std::string>>;
  const auto model = [&](bool by_name, bool by_size) {
    std::map<std::pair<std::string, size_t>, std::set<std::string>> groups;
    for (const File& file : files) {
      groups[{by_name ? file.name : "", by_size ? file.size : 0}].insert(
          own(file.path));
    }
    Groups copies;
    for (const auto& [key, paths] : groups) {
      if (paths.size() > 1) copies.insert(paths);
    }
    return copies;
  };
  const auto listed = [&](const std::string& keys) {
    Groups copies;
    for (const auto& group :
         json_lines(run({"--json", "-r", ".", "--by", keys}).out)) {
      std::set<std::string> paths;
      for (const std::string path : group["paths"]) {
        paths.insert(path.substr(2));  // "./"
      }
      EXPECT_EQ(paths.size(), group["paths"].size());
      copies.insert(paths);
    }
    return copies;
  };
  EXPECT_EQ(listed("name"), model(true, false));
  EXPECT_EQ(listed("size"), model(false, true));
  EXPECT_EQ(listed("name,size"), model(true, true));
  EXPECT_GT(listed("size,name").size(), 10u);
}

}  // namespace
}  // namespace zenfo::test
