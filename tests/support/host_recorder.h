// A host that records the arguments of its callbacks and returns what a test
// wants.
//
// Install() registers its callbacks; the destructor removes them. Only one can
// exist at a time, because callbacks have no argument for their host.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "zenfofr130.h"

namespace zenfo::test {

class HostRecorder {
 public:
  struct Question {
    std::string text;
    int32_t number = 0;
    bool operator==(const Question&) const = default;
  };

  HostRecorder() {
    current() = this;
    CallbackTable table{};
    table.report = on_report;
    table.interrupt = on_interrupt;
    table.status = on_status;
    table.file_question = on_file_question;
    table.option_question = on_option_question;
    SetCallBacks(&table);
  }
  ~HostRecorder() {
    CallbackTable none{};
    SetCallBacks(&none);
    current() = nullptr;
  }
  HostRecorder(const HostRecorder&) = delete;
  HostRecorder& operator=(const HostRecorder&) = delete;

  // The arguments of the callbacks, in order.
  std::vector<ProgressRecord> reports;
  std::vector<std::string> statuses;
  std::vector<std::string> file_questions;
  std::vector<Question> option_questions;
  int interrupt_polls = 0;

  // What to return; by default continue, and yes.
  std::function<int32_t()> interrupt = [] { return 0; };
  std::function<void(const ProgressRecord&)> on_progress;
  std::function<void(const std::string&)> on_status_text;
  std::function<int32_t(const std::string&)> answer_file =
      [](const std::string&) { return 1; };
  std::function<int32_t(const Question&)> answer_option = [](const Question&) {
    return 1;
  };

  std::vector<uint32_t> report_positions() const {
    std::vector<uint32_t> positions;
    for (const ProgressRecord& r : reports) positions.push_back(r.position);
    return positions;
  }

  // Plain narrow copy of an ASCII wide text.
  static std::string narrow(const ZenfoWideChar* text) {
    std::string copy;
    for (; *text != 0; ++text) copy += static_cast<char>(*text);
    return copy;
  }

 private:
  static HostRecorder*& current() {
    static HostRecorder* host = nullptr;
    return host;
  }

  static int32_t ZENFO_CALL on_report(ProgressRecord* progress) {
    current()->reports.push_back(*progress);
    if (current()->on_progress) current()->on_progress(*progress);
    return 0;
  }
  static int32_t ZENFO_CALL on_interrupt() {
    ++current()->interrupt_polls;
    return current()->interrupt();
  }
  static int32_t ZENFO_CALL on_status(const ZenfoWideChar* text) {
    current()->statuses.push_back(narrow(text));
    if (current()->on_status_text) {
      current()->on_status_text(current()->statuses.back());
    }
    return 0;
  }
  static int32_t ZENFO_CALL on_file_question(const ZenfoWideChar* text) {
    current()->file_questions.push_back(narrow(text));
    return current()->answer_file(current()->file_questions.back());
  }
  static int32_t ZENFO_CALL on_option_question(const ZenfoWideChar* text,
                                               int32_t number) {
    current()->option_questions.push_back({narrow(text), number});
    return current()->answer_option(current()->option_questions.back());
  }
};

// Resets the poll counter of the walks.
inline void start_polls(HostRecorder& host) {
  const int before = host.interrupt_polls;
  while (host.interrupt_polls == before) SetState(ZENFO_LIST_ERROR, -1, 1);
}

}  // namespace zenfo::test
