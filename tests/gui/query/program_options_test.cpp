#include "gui/query/program_options.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/document.h"

namespace zenfo::host::gui {
namespace {

using Words = std::vector<std::string>;

ProgramOptions read(const Words& words) {
  std::string reason;
  const ProgramOptions options = read_program_options(words, &reason);
  EXPECT_EQ(reason, "");
  return options;
}

std::string reason_for(const Words& words) {
  std::string reason;
  read_program_options(words, &reason);
  return reason;
}

TEST(ProgramOptions, NothingGivenIsNoQuery) {
  const ProgramOptions options = read({});
  EXPECT_FALSE(options.has_query || options.has_text || options.run ||
               options.new_window || options.help || options.version);
  EXPECT_EQ(options.query, Query());
}

TEST(ProgramOptions, SetAllOfAQuery) {
  const ProgramOptions options = read({"--find",   "-tide",
                                       "-w",       "--pattern",
                                       "--caret",  "--include",
                                       "*.c",      "--include",
                                       "*.h",      "--exclude",
                                       "build",    "--inside",
                                       "(!')'",    "--area-start",
                                       "a",        "--area-end",
                                       "b",        "--no-subfolders",
                                       "--binary", "--run",
                                       "--new",    "src",
                                       "[web]"});
  Query query;
  query.text = "-tide";
  query.match_case = query.whole_words = query.is_pattern = query.caret = true;
  query.include_names = {"*.c", "*.h"};
  query.exclude_names = {"build"};
  query.areas = {AreaUse::kInside, "", "(!')'", "a", "b"};
  query.subfolders = false;
  query.binary = BinaryFiles::kSearch;
  query.folders = {"src", "[web]"};
  EXPECT_EQ(options.query, query);
  EXPECT_TRUE(options.has_query && options.has_text && options.run &&
              options.new_window);
}

TEST(ProgramOptions, TakeOptionsOfTheCommandLineThatAreTheDefault) {
  const Query query = read({"-r", "--exclude-dir", "build", "src"}).query;
  EXPECT_TRUE(query.subfolders);
  EXPECT_EQ(query.exclude_names, Words({"build"}));
  EXPECT_TRUE(reason_for({"-r", "--no-subfolders"})
                  .starts_with("--no-subfolders: cannot be combined"));
}

TEST(ProgramOptions, CaseCountsAsOnTheCommandLine) {
  EXPECT_TRUE(read({"--find", "a"}).query.match_case);
  EXPECT_FALSE(read({"--find", "a", "-i"}).query.match_case);
  EXPECT_FALSE(read({"src"}).query.match_case);
}

TEST(ProgramOptions, KnowReadyMadeAreas) {
  const Query query = read({"--outside-kind", "code_comments"}).query;
  EXPECT_EQ(query.areas.use, AreaUse::kOutside);
  EXPECT_EQ(query.areas.kind, "code_comments");
}

TEST(ProgramOptions, SayWhatIsWrong) {
  EXPECT_EQ(reason_for({"--odd"}),
            "--odd: no such option; see 'zenfo-gui --help'");
  EXPECT_EQ(reason_for({"--run", "src"}),
            "--run: needs --find; see 'zenfo-gui --help'");
  EXPECT_EQ(reason_for({"--outside", "a", "--inside", "b"}),
            "--outside, --inside: only one kind of areas can be given; see "
            "'zenfo-gui --help'");
  EXPECT_EQ(reason_for({"--area-end", "a"}),
            "--area-start, --area-end: need --outside or --inside; see "
            "'zenfo-gui --help'");
  EXPECT_TRUE(reason_for({"--inside-kind", "odd"})
                  .starts_with("odd: no such kind; there are code_comments"));
}

TEST(ProgramOptions, ExplainThemselves) {
  EXPECT_TRUE(read({"--help"}).help);
  EXPECT_TRUE(read({"--version"}).version);
  const std::string help = program_help();
  EXPECT_TRUE(help.starts_with("Usage: zenfo-gui [OPTIONS] [PATH...]")) << help;
  EXPECT_NE(help.find("--outside-kind KIND"), std::string::npos) << help;
}

TEST(ProgramOptions, AreInTheDocument) {
  const std::vector<test::Block> blocks =
      test::fenced_blocks("docs/window.md", "text");
  ASSERT_EQ(blocks.size(), 1u);
  EXPECT_EQ(blocks.front().body, program_help());
}

}  // namespace
}  // namespace zenfo::host::gui
