// Collects the messages of code that hosts share; and progress that is not
// shown.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "shared/frame/messages.h"
#include "shared/frame/progress_view.h"

namespace zenfo::test {

class KeptMessages : public host::Messages {
 public:
  void complain(std::string_view subject, std::string_view reason) override {
    keep(subject, reason);
  }
  void remark(std::string_view subject, std::string_view reason) override {
    keep(subject, reason);
  }
  // "SUBJECT: REASON" each.
  const std::vector<std::string>& all() const { return all_; }

 private:
  void keep(std::string_view subject, std::string_view reason) {
    all_.push_back(std::string(subject) + ": " + std::string(reason));
  }

  std::vector<std::string> all_;
};

class NoProgress : public host::ProgressView {
 public:
  bool wanted() const override { return false; }
  void begin_run(uint32_t, Count) override {}
  void end_run() override {}
  void show_status(const ZenfoWideChar*) override {}
  void show_step(const ProgressRecord&) override {}
  void erase() override {}
};

}  // namespace zenfo::test
