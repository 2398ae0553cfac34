#include "messages.h"

#include <algorithm>

#include "system.h"

namespace zenfo::cli {
namespace {

bool any_complaint = false;

}  // namespace

void complain(std::string_view subject, std::string_view reason) {
  any_complaint = true;
  remark(subject, reason);
}

void remark(std::string_view subject, std::string_view reason) {
  std::string line = "zenfo: ";
  if (!subject.empty()) {
    line += subject;
    line += ": ";
  }
  line += reason;
  std::replace_if(
      line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; },
      '?');
  line += '\n';
  system::write(system::Stream::kErrors, line);
}

bool complained() { return any_complaint; }

}  // namespace zenfo::cli
