#include "search/run_results.h"

#include <utility>

namespace zenfo {

void ListResults::rejected(FileInHand& file) {
  if (file.copy != nullptr) errors_.append(std::move(file.copy));
}

void ListResults::taken(FileInHand& file) {
  if (file.copy == nullptr) return;
  file.copy->flag = static_cast<int32_t>(file.found);
  ItemList& list = file.found != 0 ? results_ : no_matches_;
  list.append(std::move(file.copy));
}

bool ListResults::finish() {
  results_.build_index();
  no_matches_.build_index();
  errors_.build_index();
  return true;
}

bool SummaryFile::open(const char* path) {
  return file_.open(path, platform::OutputMode::kTruncate,
                    OutFile::LineEnds::kExpand);
}

void SearchSummary::taken(FileInHand& file) {
  file_.write(file.path.view());
  file_.write(", found ");
  file_.write_number(file.found);
  file_.write("\r\n");
}

}  // namespace zenfo
