#include "output.h"

#include "messages.h"
#include "system.h"

namespace zenfo::cli {

void Output::flush() {
  if (!failed_ && !buffer_.empty()) {
    const std::string reason = system::write(system::Stream::kOutput, buffer_);
    failed_ = !reason.empty();
    if (failed_ && !system::reader_is_gone()) {
      complain("standard output", reason);
    }
  }
  buffer_.clear();
}

}  // namespace zenfo::cli
