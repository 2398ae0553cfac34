#include "search/report_file.h"

#include "pattern/match_record.h"
#include "text/c_text.h"

namespace zenfo {
namespace {

constexpr std::string_view kHeader =
    "\r\nNumber\tOffset\tLength\r\n------\t------\t------\r\n";
constexpr std::string_view kMatchStart =
    "\r\n-------------MATCH-------------\r\n";
constexpr std::string_view kMatchEnd =
    "\r\n-----------END MATCH-----------\r\n";

}  // namespace

void ReportFile::open(const char* path) {
  if (is_empty(path)) return;
  path_ = path;
  file_.open(path, platform::OutputMode::kTruncate, OutFile::LineEnds::kRaw);
}

bool ReportFile::begin_file(std::string_view path) {
  header_written_ = false;
  file_.write(path);
  return file_.write("\r\n");
}

bool ReportFile::write_matches(ItemList& matches, uint32_t selected) {
  if (selected == 0) return true;
  if (!header_written_) file_.write(kHeader);
  header_written_ = true;
  for (uint32_t i = 0; i < matches.count(); ++i) {
    if (matches.poll_interrupt() != 0) return false;
    const auto* match = record_cast<MatchRecord>(matches.get(i));
    if (match == nullptr) return false;
    if (match->state == 0) continue;
    file_.write_number(i + reported_ + 1);
    file_.write('\t');
    file_.write_number(match->offset);
    file_.write('\t');
    file_.write_number(match->length);
    file_.write(kMatchStart);
    file_.write(match->matched());
    if (!file_.write(kMatchEnd)) return false;
  }
  reported_ += selected;
  return true;
}

bool ReportFile::end_file() {
  return header_written_ ? file_.write("\r\n") : true;
}

}  // namespace zenfo
