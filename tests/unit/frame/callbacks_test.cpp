#include "frame/callbacks.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frame/error_log.h"
#include "support/temp_folder.h"

namespace zenfo {
namespace {

struct Fault {};

// The arguments of the callbacks below, and what they return.
std::vector<std::u16string> texts;
std::vector<int32_t> numbers;
std::vector<const void*> pointers;
int32_t answer;
bool throwing;

int32_t answer_or_throw() {
  if (throwing) throw Fault();
  return answer;
}
int32_t ZENFO_CALL take_nothing() { return answer_or_throw(); }
int32_t ZENFO_CALL take_text(const ZenfoWideChar* text) {
  pointers.push_back(text);
  texts.emplace_back(text);
  return answer_or_throw();
}
int32_t ZENFO_CALL take_text_and_number(const ZenfoWideChar* text,
                                        int32_t number) {
  texts.emplace_back(text);
  numbers.push_back(number);
  return answer_or_throw();
}
int32_t ZENFO_CALL take_number(int32_t number) {
  numbers.push_back(number);
  return answer_or_throw();
}
int32_t ZENFO_CALL take_record(ProgressRecord* record) {
  pointers.push_back(record);
  return answer_or_throw();
}

class CallbacksTest : public testing::Test {
 protected:
  CallbacksTest() {
    texts.clear();
    numbers.clear();
    pointers.clear();
    answer = 42;
    throwing = false;
    log.set_file(path.c_str());
    install_error_log(&log);
    allocate_shared_wide_buffer();
  }
  ~CallbacksTest() override {
    host_callbacks() = {};
    free_shared_wide_buffer();
    install_error_log(nullptr);
  }
  // The routine of the one record written since the last call, or "".
  std::string logged_routine() {
    if (!test::file_exists(path)) return "";
    const std::string bytes = test::read_file(path);
    std::filesystem::remove(path);
    const std::string title = "  routine  : ";
    const size_t start = bytes.find(title) + title.size();
    EXPECT_EQ(bytes.find(title, start), std::string::npos) << "two records";
    EXPECT_NE(bytes.find("Runtime error"), std::string::npos);
    return bytes.substr(start, bytes.find('\r', start) - start);
  }
  test::TempFolder folder;
  std::string path = folder.path("errors");
  ErrorLog log;
};

TEST_F(CallbacksTest, NullCallbacksAnswerTheirFixedValues) {
  ProgressRecord record{};
  EXPECT_EQ(cb_lng(nullptr), 0);
  EXPECT_EQ(cb_lng_str(nullptr, "x"), -1);
  EXPECT_EQ(cb_lng_str_lng(nullptr, "x", 1), -1);
  EXPECT_EQ(cb_lng_lng(nullptr, 1), 0);
  EXPECT_EQ(cb_lng_report(nullptr, &record), 0);
}

TEST_F(CallbacksTest, TheCallbacksAnswerIsPassedOn) {
  ProgressRecord record{};
  for (int32_t value : {0, 1, -1, INT32_MIN, INT32_MAX}) {
    answer = value;
    EXPECT_EQ(cb_lng(take_nothing), value);
    EXPECT_EQ(cb_lng_str(take_text, "x"), value);
    EXPECT_EQ(cb_lng_str_lng(take_text_and_number, "x", 7), value);
    EXPECT_EQ(cb_lng_lng(take_number, 8), value);
    EXPECT_EQ(cb_lng_report(take_record, &record), value);
  }
  EXPECT_EQ(pointers.back(), &record);
  EXPECT_EQ(numbers.back(), 8);
}

TEST_F(CallbacksTest, AMissingOrEmptyTextIsNotSent) {
  EXPECT_EQ(cb_lng_str(take_text, nullptr), -1);
  EXPECT_EQ(cb_lng_str(take_text, ""), -1);
  EXPECT_EQ(cb_lng_str_lng(take_text_and_number, nullptr, 1), -1);
  EXPECT_EQ(cb_lng_str_lng(take_text_and_number, "", 1), -1);
  EXPECT_TRUE(texts.empty());
}

TEST_F(CallbacksTest, WithoutTheBufferNothingIsSent) {
  free_shared_wide_buffer();
  EXPECT_EQ(cb_lng_str(take_text, "x"), -1);
  EXPECT_EQ(cb_lng_str_lng(take_text_and_number, "x", 1), -1);
  EXPECT_TRUE(texts.empty());
  EXPECT_EQ(cb_lng(take_nothing), 42);
}

TEST_F(CallbacksTest, EveryTextLiesInTheOneSharedBuffer) {
  cb_lng_str(take_text, "one");
  cb_lng_str(take_text, "two");
  EXPECT_EQ(pointers[0], pointers[1]);
  EXPECT_EQ(texts, (std::vector<std::u16string>{u"one", u"two"}));
}

TEST_F(CallbacksTest, AFaultIsLoggedUnderTheWrappersNameAndAnswersItsValue) {
  ProgressRecord record{};
  throwing = true;
  EXPECT_EQ(cb_lng(take_nothing), 0);
  EXPECT_EQ(logged_routine(), "cb_lng");
  EXPECT_EQ(cb_lng_str(take_text, "x"), -1);
  EXPECT_EQ(logged_routine(), "cb_lng_str");
  EXPECT_EQ(cb_lng_str_lng(take_text_and_number, "x", 1), -1);
  EXPECT_EQ(logged_routine(), "cb_lng_str_lng");
  EXPECT_EQ(cb_lng_lng(take_number, 1), 0);
  EXPECT_EQ(logged_routine(), "cb_lng_lng");
  EXPECT_EQ(cb_lng_report(take_record, &record), 0);
  EXPECT_EQ(logged_routine(), "cb_lng_report");
}

TEST_F(CallbacksTest, InterrAnswersOneForAnyStop) {
  EXPECT_EQ(interr(nullptr), 0);
  host_callbacks().interrupt = take_nothing;
  for (int32_t value : {1, -1, 2, INT32_MIN}) {
    answer = value;
    EXPECT_EQ(interr(nullptr), 1) << value;
  }
  answer = 0;
  EXPECT_EQ(interr(&answer), 0);
  throwing = true;
  EXPECT_EQ(interr(nullptr), 0);
}

// Intended: the host's answer to a report is ignored.
TEST_F(CallbacksTest, ReportAnswersOneWhateverTheHostAnswered) {
  ProgressRecord record{};
  EXPECT_EQ(report(&record), 0);
  host_callbacks().report = take_record;
  EXPECT_EQ(report(nullptr), 0);
  for (int32_t value : {0, 1, -1}) {
    answer = value;
    EXPECT_EQ(report(&record), 1) << value;
  }
  EXPECT_EQ(pointers.size(), 3u);
}

TEST_F(CallbacksTest, StatusTextsOf1023BytesArriveWholeAndLongerOnesAreCut) {
  host_callbacks().status = take_text;
  for (size_t length : {1u, 1022u, 1023u, 1024u, 100000u}) {
    texts.clear();
    send_status(std::string(length, 'x'));
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(texts[0].size(), std::min<size_t>(length, 1023));
  }
}

TEST_F(CallbacksTest, AStatusWithAPathHasABlankBetweenAndIsCutAsAWhole) {
  host_callbacks().status = take_text;
  send_status("Now loading file", "/a");
  EXPECT_EQ(texts.back(), u"Now loading file /a");
  // 16 bytes, the blank and 1006 more.
  std::string path_too_long(1006, 'p');
  path_too_long += 'q';
  send_status("Now loading file", path_too_long);
  EXPECT_EQ(texts.back(), u"Now loading file " + std::u16string(1006, 'p'));
  send_status("");
  EXPECT_EQ(texts.size(), 2u);
}

TEST_F(CallbacksTest, NoStatusIsSentWithoutACallback) {
  send_status("x");
  send_status("x", "y");
  EXPECT_TRUE(texts.empty());
}

TEST_F(CallbacksTest, QuestionsAnswerMinusOneWithoutACallbackOrAText) {
  EXPECT_EQ(ask_about_file("x"), -1);
  EXPECT_EQ(ask_option("x", 1), -1);
  host_callbacks().file_question = take_text;
  host_callbacks().option_question = take_text_and_number;
  EXPECT_EQ(ask_about_file(""), -1);
  EXPECT_EQ(ask_option("", 1), -1);
  EXPECT_EQ(ask_about_file("/a"), 42);
  EXPECT_EQ(ask_option("/b", 3), 42);
  EXPECT_EQ(texts, (std::vector<std::u16string>{u"/a", u"/b"}));
  EXPECT_EQ(numbers, std::vector<int32_t>{3});
}

TEST_F(CallbacksTest, PathsOfQuestionsAreCutToo) {
  host_callbacks().option_question = take_text_and_number;
  ask_option(std::string(5000, 'x'), 1);
  EXPECT_EQ(texts.back(), std::u16string(1023, 'x'));
}

}  // namespace
}  // namespace zenfo
