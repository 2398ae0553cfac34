#include "gui/results/export.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "gui/made_results.h"
#include "support/temp_folder.h"

namespace zenfo::host::gui {
namespace {

class Export : public testing::Test {
 protected:
  Export() {
    add("a.txt", "one \"two\",\r\nthree two\r\n", {{5, 3}, {18, 3}});
    add("b.txt", "\ttwo\xFC", {{1, 3}});
  }

  void add(const std::string& name, const std::string& text,
           std::vector<Match> matches) {
    FoundFile file;
    file.path = folder_.file(name, text);
    file.count = static_cast<uint32_t>(matches.size());
    file.matches = std::move(matches);
    set_.add(test::news_of({file}));
  }

  std::string exported(ExportForm form) {
    std::vector<uint32_t> files;
    for (uint32_t i = 0; i < set_.count(); ++i) files.push_back(i);
    std::string text;
    std::atomic<uint64_t> done = 0;
    const ExportSource source(set_, files, form);
    result_ = export_results(
        source,
        [&](std::string_view lines) {
          text += lines;
          return true;
        },
        &done);
    EXPECT_EQ(done, source.files().size());
    for (size_t at; (at = text.find(folder_.path())) != std::string::npos;) {
      text.replace(at, folder_.path().size() + 1, "");
    }
    return text;
  }

  const test::TempFolder folder_;
  ResultSet set_{Query()};
  ExportResult result_;
};

TEST_F(Export, WritesCsv) {
  EXPECT_EQ(exported(ExportForm::kCsv),
            "path,line,column,offset,length,match,text\r\n"
            "a.txt,1,6,5,3,two,\"one \"\"two\"\",\"\r\n"
            "a.txt,2,7,18,3,two,three two\r\n"
            "b.txt,1,2,1,3,two,\ttwo\xC3\xBC\r\n");
  EXPECT_EQ(result_.files, 2u);
  EXPECT_EQ(result_.matches, 3u);
}

TEST_F(Export, WritesTsv) {
  EXPECT_EQ(exported(ExportForm::kTsv),
            "path\tline\tcolumn\toffset\tlength\tmatch\ttext\n"
            "a.txt\t1\t6\t5\t3\ttwo\tone \"two\",\n"
            "a.txt\t2\t7\t18\t3\ttwo\tthree two\n"
            "b.txt\t1\t2\t1\t3\ttwo\t two\xC3\xBC\n");
}

TEST_F(Export, WritesText) {
  EXPECT_EQ(exported(ExportForm::kText),
            "a.txt:1: one \"two\",\na.txt:2: three two\n"
            "b.txt:1: \ttwo\xC3\xBC\n");
}

TEST_F(Export, WritesTheJsonOfTheCommandLine) {
  set_.remove(1);
  set_.choose(0, 0, false);
  const std::string text = exported(ExportForm::kJsonLines);
  EXPECT_NE(text.find("{\"type\":\"match\",\"data\":{\"path\":{\"text\":\""),
            std::string::npos)
      << text;
  EXPECT_NE(text.find("\"lines\":{\"text\":\"three two\\r\\n\"},"
                      "\"line_number\":2,\"absolute_offset\":12,"
                      "\"submatches\":[{\"match\":{\"text\":\"two\"},"
                      "\"start\":6,\"end\":9}]"),
            std::string::npos)
      << text;
  EXPECT_TRUE(text.ends_with(
      "{\"type\":\"summary\",\"data\":{\"stats\":{\"searches\":1,"
      "\"searches_with_match\":1,\"matched_lines\":1,\"matches\":1}}}\n"))
      << text;
}

TEST_F(Export, TakesOnlyWhatIsChosen) {
  set_.choose(0, 1, false);
  set_.choose_file(1, false);
  EXPECT_EQ(exported(ExportForm::kText), "a.txt:1: one \"two\",\n");
  EXPECT_EQ(exported(ExportForm::kPaths), "a.txt\n");
  set_.choose_file(0, false);
  EXPECT_EQ(exported(ExportForm::kText), "");
}

TEST_F(Export, PathsOfOtherFilesCanBeWritten) {
  set_.add(test::news_of({}, {{"/none", ResultState::kNoMatch, ""}}));
  EXPECT_EQ(exported(ExportForm::kPaths), "a.txt\nb.txt\n/none\n");
  EXPECT_EQ(exported(ExportForm::kText).find("/none"), std::string::npos);
}

TEST_F(Export, NamesFilesThatCannotBeReadAgain) {
  std::filesystem::remove(test::native(folder_.path("b.txt")));
  folder_.file("a.txt", "short");
  EXPECT_EQ(exported(ExportForm::kText), "");
  EXPECT_EQ(result_.unread, std::vector<std::string>({folder_.path("a.txt"),
                                                      folder_.path("b.txt")}));
  EXPECT_EQ(result_.files, 0u);
}

TEST_F(Export, EndsWhenItsLinesAreNotTaken) {
  int calls = 0;
  const uint32_t files[] = {0, 1};
  const ExportResult result =
      export_results(ExportSource(set_, files, ExportForm::kText),
                     [&](std::string_view) { return ++calls < 2; });
  EXPECT_TRUE(result.stopped);
  EXPECT_EQ(calls, 2);
}

TEST_F(Export, WritesWhatWasChosenWhenItBegan) {
  const uint32_t files[] = {0, 1};
  const ExportSource source(set_, files, ExportForm::kText);
  set_.choose_all(false);
  set_.remove(1);
  add("c.txt", "two", {{0, 3}});
  int lines = 0;
  export_results(source, [&](std::string_view) { return ++lines > 0; });
  EXPECT_EQ(lines, 3);
}

TEST_F(Export, MayRunWhileTheResultGrowsAndChanges) {
  for (int i = 0; i < 2000; ++i) {
    set_.add(test::news_of({test::found_file("/a" + std::to_string(i), 3)}));
  }
  std::vector<uint32_t> files;
  for (uint32_t i = 0; i < set_.count(); ++i) files.push_back(i);
  const ExportSource source(set_, files, ExportForm::kPaths);
  const ExportSource lines(set_, files, ExportForm::kText);
  uint64_t paths = 0;
  uint64_t chosen = 0;
  std::thread writer([&] {
    export_results(source, [&](std::string_view) { return ++paths > 0; });
    for (const ExportSource::File& file : lines.files()) {
      chosen += lines.matches_of(file).size();
    }
  });
  for (uint32_t i = 0; i < 2000; ++i) {
    set_.add(test::news_of({test::found_file("/b" + std::to_string(i), 3)}));
    set_.choose_file(i, false);
    if (i % 2 == 0) set_.remove(i);
  }
  writer.join();
  EXPECT_EQ(paths, files.size());
  EXPECT_EQ(chosen, 3u + 2000 * 3);
}

TEST(ExportFields, AreQuoted) {
  EXPECT_EQ(csv_field("a b"), "a b");
  EXPECT_EQ(csv_field("a,b"), "\"a,b\"");
  EXPECT_EQ(csv_field("a\nb"), "\"a\nb\"");
  EXPECT_EQ(csv_field("\""), "\"\"\"\"");
  EXPECT_EQ(csv_field(" a"), "\" a\"");
  EXPECT_EQ(csv_field(""), "");
  EXPECT_EQ(tsv_field("a\tb\r\nc\\"), "a b  c\\");
}

}  // namespace
}  // namespace zenfo::host::gui
