// The document about the file formats: each example is read by the operation
// that reads such files, or is what an operation writes.
//
// Native only, because the examples use Linux paths.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifdef __linux__

#include <algorithm>
#include <array>
#include <cctype>
#include <filesystem>
#include <set>
#include <sstream>
#include <string>

#include "support/document.h"
#include "support/list_test.h"
#include "support/matchers.h"
#include "zenfofr130.h"

namespace zenfo::test {
namespace {

constexpr char kDocument[] = "docs/formats.md";
constexpr char kFolderInDocument[] = "/home/ann";

// The bytes of the only example with this mark.
std::string example(const std::string& mark) {
  const auto blocks = fenced_blocks(kDocument, mark);
  EXPECT_EQ(blocks.size(), 1u) << mark;
  std::string bytes;
  for (char c : with_bytes(blocks.empty() ? "" : blocks[0].body)) {
    bytes += c == '\n' ? "\r\n" : std::string(1, c);
  }
  return bytes;
}

std::string replaced(std::string text, const std::string& from,
                     const std::string& to) {
  for (size_t at = 0; (at = text.find(from, at)) != std::string::npos;) {
    text.replace(at, from.size(), to);
    at += to.size();
  }
  return text;
}

std::string without_digits(std::string text) {
  std::replace_if(
      text.begin(), text.end(), [](unsigned char c) { return isdigit(c); },
      '0');
  return text;
}

// The files that the document mentions, in the working folder.
class Formats : public ListTest {
 protected:
  void SetUp() override {
    ListTest::SetUp();
    before_ = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    folder.file("notes.txt", "a cat\r\nand one more cat");
    folder.file("about.txt", "no pets");
  }
  void TearDown() override {
    std::filesystem::current_path(before_);
    ListTest::TearDown();
  }
  std::string in(const std::string& mark) {
    return folder.file("in", example(mark));
  }
  std::string out() { return read_file(folder.path("out")); }
  static int32_t set_pattern(const char* text, bool is_pattern = false) {
    return SetPattern(nullptr, text, nullptr, 0, is_pattern, 0, 0, 0, 0);
  }
  int32_t replace_cats(const std::string& list_file, bool safe_store) {
    EXPECT_EQ(set_pattern("cat"), 1);
    return ReplaceBlock_f("dog", 1, 0, 0, 0, safe_store, list_file.c_str(),
                          "out", 0, 0, 0, 0, 0, 0);
  }

 private:
  std::filesystem::path before_;
};

TEST_F(Formats, ClassesAreReadAsShown) {
  ASSERT_EQ(set_operators(in("classes").c_str()), 1);
  const std::string words = folder.file("words", "AEIOU aeiou XYZbcd");
  const auto found = [&](const char* pattern) {
    EXPECT_EQ(set_pattern(pattern, true), 1);
    const std::string list = folder.file("list", "words\r\n");
    EXPECT_EQ(FindBlock_f(1, 0, 0, "report", 0, list.c_str(), "out", 0), 1);
    const std::string report = read_file(folder.path("report"));
    const size_t start = report.find("MATCH-------------\r\n") + 20;
    return report.substr(start, report.find("\r\n-----------END") - start);
  };
  EXPECT_EQ(found("#vowel"), "aeiou");
  EXPECT_EQ(found("#consonant"), "XYZbcd");
}

TEST_F(Formats, FileListIsReadAndWrittenAsShown) {
  const std::array<unsigned char, ZENFO_OPTION_COUNT> no_facts{};
  ASSERT_EQ(LoadFileList(in("file-list").c_str(), no_facts.data()), 3);
  EXPECT_THAT(texts(GetFullName, ZENFO_LIST_RUN_FILES),
              ElementsAre("notes.txt", "about.txt", "old notes.txt"));
  SetState(ZENFO_LIST_RUN_FILES, -1, 1);
  EXPECT_EQ(SaveFileList("out"), 3);
  EXPECT_EQ(out(), example("file-list"));
}

TEST_F(Formats, SearchReportAndSummaryAreWrittenAsShown) {
  ASSERT_EQ(set_pattern("cat"), 1);
  EXPECT_EQ(
      FindBlock_f(1, 0, 0, "report", 0, in("file-list").c_str(), "out", 0), 2);
  EXPECT_EQ(read_file(folder.path("report")), example("search-report"));
  EXPECT_EQ(out(), example("result-summary"));
}

TEST_F(Formats, ReplaceSummaryIsWrittenAsShown) {
  EXPECT_EQ(replace_cats(in("file-list"), false), 2);
  EXPECT_EQ(out(), example("replace-summary"));
}

TEST_F(Formats, SummaryLineWithoutASafeCopyHasNoEnd) {
  EXPECT_EQ(replace_cats(in("file-list"), true), 0) << "no undo list file";
  EXPECT_THAT(out(), testing::StartsWith(
                         "notes.txt, found 2 ERROR, refer to error log file "
                         "for detailsabout.txt, found 0"));
}

// The folder and the time may differ.
TEST_F(Formats, UndoListIsWrittenAndReadAsShown) {
  ASSERT_EQ(SetUndoFile(folder.path("safe/undo.txt").c_str()), 1);
  const std::string list =
      folder.file("list", folder.path("notes.txt") + "\r\n");
  EXPECT_EQ(replace_cats(list, true), 2);
  const std::string written = replaced(read_file(folder.path("safe/undo.txt")),
                                       folder.path(), kFolderInDocument);
  const std::string shown = example("undo-list");
  const size_t time = shown.rfind('\t');
  EXPECT_EQ(written.substr(0, time), shown.substr(0, time));
  EXPECT_EQ(without_digits(written), without_digits(shown));

  folder.file("safe/undo.txt",
              replaced(shown, kFolderInDocument, folder.path()));
  EXPECT_EQ(GetUndoList(), 1);
  EXPECT_EQ(Undo(), 0);
  EXPECT_EQ(read_file(folder.path("notes.txt")), "a cat\r\nand one more cat");
}

TEST_F(Formats, StringPairsAreReadAndWrittenAsShown) {
  AddStringPair("colour", "color");
  AddStringPair("grey", "gray");
  AddStringPair("remove me", "");
  EXPECT_EQ(SaveStringPair("out", 0), 3);
  EXPECT_EQ(out(), example("string-pairs"));
  EXPECT_EQ(LoadStringPair("out"), 3);
  EXPECT_THAT(texts(GetFindString, ZENFO_LIST_PAIRS),
              ElementsAre("colour", "grey", "remove me"));
  EXPECT_THAT(texts(GetReplaceString, ZENFO_LIST_PAIRS),
              ElementsAre("color", "gray", "(null)"));
}

TEST_F(Formats, ReplaceListIsReadAndWrittenAsShown) {
  EXPECT_EQ(load_replace_list(in("replace-list").c_str()), 3);
  EXPECT_THAT(texts(get_replace_value, ZENFO_LIST_VALUES),
              ElementsAre("first", "second", "third"));
  EXPECT_EQ(save_replace_list("out"), 3);
  EXPECT_EQ(out(), example("saved-replace-list"));
  EXPECT_EQ(load_replace_list("out"), 3);
  EXPECT_THAT(texts(get_replace_value, ZENFO_LIST_VALUES),
              ElementsAre("first\r", "second\r", "third\r"));
}

TEST(FormatsDocument, ShowsNoExampleThatIsNotRun) {
  std::istringstream document(read_source(kDocument));
  std::set<std::string> marks;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with("```") && line != "```") marks.insert(line.substr(3));
  }
  EXPECT_THAT(marks, ElementsAre("classes", "file-list", "replace-list",
                                 "replace-summary", "result-summary",
                                 "saved-replace-list", "search-report",
                                 "string-pairs", "undo-list"));
}

}  // namespace
}  // namespace zenfo::test

#endif  // __linux__
