#include "shared/runs/skipped.h"

#include "shared/frame/counted.h"

namespace zenfo::host {

void Skipped::complain_of(std::string_view path, const std::string& reason) {
  messages_.complain(path, "skipped: " + reason);
  ++reasons_[reason];
  ++count_;
}

void Skipped::complain_of_more(uint64_t files, const std::string& reason) {
  messages_.complain(
      "", counted(files, "more file", "more files") + " skipped: " + reason);
  reasons_[reason] += files;
  count_ += files;
}

std::string Skipped::summary() const {
  std::string text = counted(count_, "file", "files") + " skipped";
  const char* separator = " (";
  for (const auto& [reason, number] : reasons_) {
    text += separator + std::to_string(number) + ": " + reason;
    separator = "; ";
  }
  return count_ == 0 ? text : text + ')';
}

}  // namespace zenfo::host
