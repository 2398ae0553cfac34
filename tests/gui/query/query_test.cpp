#include "gui/query/query.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace zenfo::host::gui {
namespace {

Query good_query() {
  Query query;
  query.text = "colour";
  query.folders = {"src"};
  return query;
}

TEST(Query, HasNoFaultsWhenItCanBeRun) {
  EXPECT_TRUE(faults_of(good_query()).empty());
  Query query = good_query();
  query.areas = {AreaUse::kOutside, "code_comments", "", "", ""};
  query.include_names = {"*.[ch]"};
  EXPECT_TRUE(faults_of(query).empty());
}

TEST(Query, SaysWhatIsWrong) {
  struct Row {
    void (*spoil)(Query& query);
    QueryField field;
    std::string reason;
  };
  const Row rows[] = {
      {[](Query& q) { q.text = ""; }, QueryField::kText,
       "Type what to look for"},
      {[](Query& q) { q.text = std::string(1, '\0'); }, QueryField::kText,
       "A text with a zero byte cannot be searched for"},
      {[](Query& q) { q.folders.clear(); }, QueryField::kFolders,
       "Name a folder or a file to search in"},
      {[](Query& q) { q.folders.push_back(""); }, QueryField::kFolders,
       "Name a folder or a file to search in"},
      {[](Query& q) {
         q.include_names = {"*.c", "src/*.h"};
       },
       QueryField::kIncludeNames,
       "\"src/*.h\" is no pattern for names: leave out folders"},
      {[](Query& q) { q.exclude_names = {"a/b"}; }, QueryField::kExcludeNames,
       "\"a/b\" is no pattern for names: leave out folders"},
      {[](Query& q) { q.areas.use = AreaUse::kInside; }, QueryField::kAreas,
       "Choose a kind of areas, or write a pattern for them"},
      {[](Query& q) {
         q.areas = {AreaUse::kInside, "odd", "", "", ""};
       },
       QueryField::kAreas, "There is no kind of areas called \"odd\""},
      {[](Query& q) {
         q.areas = {AreaUse::kInside, "", "a", std::string(1, '\0'), ""};
       },
       QueryField::kAreas, "A text with a zero byte cannot be searched for"},
  };
  for (const Row& row : rows) {
    Query query = good_query();
    row.spoil(query);
    EXPECT_EQ(faults_of(query),
              std::vector<QueryFault>({{row.field, row.reason}}));
  }
}

TEST(Query, NamesTheFirstFieldFirst) {
  const std::vector<QueryFault> faults = faults_of(Query());
  ASSERT_EQ(faults.size(), 2u);
  EXPECT_EQ(faults[0].field, QueryField::kText);
  EXPECT_EQ(faults[1].field, QueryField::kFolders);
}

TEST(Query, NotesTellWhatTheLibraryDoesNotKnow) {
  Query query = good_query();
  query.whole_words = true;
  EXPECT_TRUE(notes_on(query).empty());
  query.text = "K\xC3\xB6ln";
  EXPECT_EQ(notes_on(query), std::vector<std::string>(
                                 {"Case is ignored for the letters A to Z only",
                                  "Words end at letters other than A to Z"}));
  query.match_case = true;
  query.whole_words = false;
  EXPECT_TRUE(notes_on(query).empty());
}

// Areas that are not used are no fault.
TEST(Query, UnusedAreasAreNotChecked) {
  Query query = good_query();
  query.areas.kind = "odd";
  EXPECT_TRUE(faults_of(query).empty());
}

TEST(Query, IsTheSameAfterJson) {
  Query query;
  query.text = "a\nb \"x\" \xC3\xA4";
  query.match_case = query.whole_words = query.is_pattern = query.caret = true;
  query.folders = {"C:\\a;b", "/tmp"};
  query.subfolders = false;
  query.include_names = {"*.c", "*.h"};
  query.exclude_names = {"build"};
  query.areas = {AreaUse::kInside, "strings", "#x", "(", ")"};
  query.binary = BinaryFiles::kSearch;
  for (const Query& each : {query, Query(), good_query()}) {
    std::string reason;
    const std::string text = format_json(to_json(each), JsonForm::kOneLine);
    EXPECT_EQ(query_from_json(*parse_json(text, &reason), &reason), each)
        << text << reason;
  }
}

TEST(Query, MembersOfItsJsonHaveFixedNames) {
  EXPECT_EQ(format_json(to_json(good_query()), JsonForm::kOneLine),
            "{\"text\":\"colour\",\"match_case\":false,\"whole_words\":false,"
            "\"pattern\":false,\"caret\":false,\"subfolders\":true,"
            "\"folders\":[\"src\"],\"include_names\":[],\"exclude_names\":[],"
            "\"areas\":{\"use\":\"everywhere\",\"kind\":\"\",\"pattern\":\"\","
            "\"start\":\"\",\"end\":\"\"},\"binary\":\"skip\"}");
}

TEST(Query, ReadsWhatJsonHas) {
  std::string reason;
  const auto json = parse_json(
      "{\"text\":\"x\",\"odd\":[1],\"areas\":{\"use\":\"outside\"}}", &reason);
  const auto query = query_from_json(*json, &reason);
  ASSERT_TRUE(query) << reason;
  EXPECT_EQ(query->text, "x");
  EXPECT_TRUE(query->subfolders);
  EXPECT_EQ(query->areas.use, AreaUse::kOutside);
}

TEST(Query, SaysWhatIsWrongWithJson) {
  struct Row {
    std::string json;
    std::string reason;
  };
  const Row rows[] = {
      {"5", "is no object"},
      {"{\"text\":1}", "\"text\" is no text"},
      {"{\"caret\":\"yes\"}", "\"caret\" is neither true nor false"},
      {"{\"folders\":\"a\"}", "\"folders\" is no list"},
      {"{\"folders\":[1]}", "\"folders\" is no list of texts"},
      {"{\"binary\":\"x\"}", "\"binary\" has the unknown value \"x\""},
      {"{\"areas\":[]}", "\"areas\" is no object"},
      {"{\"areas\":{\"use\":\"x\"}}", "\"use\" has the unknown value \"x\""},
  };
  for (const Row& row : rows) {
    std::string reason;
    EXPECT_FALSE(query_from_json(*parse_json(row.json, &reason), &reason));
    EXPECT_EQ(reason, row.reason) << row.json;
  }
}

}  // namespace
}  // namespace zenfo::host::gui
