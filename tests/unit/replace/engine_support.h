// Shared by the tests of the engines: a context with a text and matches, and
// the file that an engine writes.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>

#include "pattern/context.h"
#include "pattern/match_record.h"
#include "support/temp_folder.h"

namespace zenfo::replace_test {

struct Span {
  uint32_t offset;
  uint32_t length;
};

class Engine {
 public:
  // Sets text and matches; positions without one are not selected.
  void set(std::string_view text, std::initializer_list<Span> spans) {
    text_ = text;
    context.clear_matches();
    context.set_text(text_.data(), text_.size());
    for (const Span& span : spans) {
      context.matches.append(std::make_unique<MatchRecord>(
          text_.data() + span.offset, span.length, span.offset));
    }
  }
  MatchRecord& match(uint32_t i) {
    return *record_cast<MatchRecord>(context.matches.get(i));
  }
  std::string written() const { return test::read_file(path); }

  test::TempFolder folder;
  const std::string path = folder.file("out", "the text before, which is long");
  PatternContext context;

 private:
  std::string text_;
};

}  // namespace zenfo::replace_test
