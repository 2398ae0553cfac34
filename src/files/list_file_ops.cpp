#include "files/list_file_ops.h"

#include <memory>

#include "files/file_content.h"
#include "files/file_entry.h"
#include "frame/callbacks.h"
#include "frame/rows.h"
#include "text/c_text.h"
#include "text/out_file.h"
#include "text/records.h"

namespace zenfo {
namespace {

int32_t refuse(const char* message, const char* context, const ExportRow& row) {
  ReportError(message, context, row.routine);
  return -1;
}

bool is_empty(const char* text) { return text == nullptr || *text == '\0'; }

enum class Outcome { kDone, kStopped, kFailed };

// One entry for each line that is not empty. Loaded without hooks: an
// interrupted load would cut the list short.
Outcome import_names(ItemList& list, const char* file) {
  send_status("Now importing filenames");
  FileContent content;
  if (content.load_file_content(file) < 0) return Outcome::kFailed;
  RecordReader lines(content.bytes(), "\r\n");
  while (const auto line = lines.next()) {
    const std::string_view name = up_to_nul(*line);
    if (name.empty()) continue;
    list.Append(std::make_unique<FileEntry>(SharedText(name)));
    if (list.PollInterrupt() != 0) return Outcome::kStopped;
  }
  list.BuildIndex();
  return Outcome::kDone;
}

// Runs `work` on every file; false when stopped.
template <class Work>
bool for_each_entry(ItemList& list, Work work) {
  for (uint32_t i = 0; i < list.Count(); ++i) {
    if (auto* entry = record_cast<FileEntry>(list.Get(i))) work(*entry);
    if (list.PollInterruptEvery(100) != 0) return false;
    list.ReportPosition(i);
  }
  list.ReportPosition(list.Count());
  return true;
}

bool derive_names(ItemList& list, const FactOptions& options) {
  send_status("Now processing filenames");
  return for_each_entry(list, [&](FileEntry& entry) {
    const bool named = !options.file_name || entry.derive_file_name();
    entry.flag = named ? 0 : -1;
  });
}

// An entry whose file is gone stays, flagged.
bool gather_facts(ItemList& list, const FactOptions& options) {
  send_status("Now retrieving files attributes");
  platform::NearbyFolder nearby;
  return for_each_entry(list, [&](FileEntry& entry) {
    const bool gathered = entry.gather(options, &nearby);
    if (!gathered || entry.trashed() ||
        !platform::exists(entry.full_name().c_str())) {
      entry.flag = -1;
    }
  });
}

// The walk of both saves: polls, tells the position and writes what is wanted,
// counting the lines.
template <class Poll, class Wanted>
Outcome write_names(ItemList& list, OutFile& out, Poll poll, Wanted wanted,
                    int32_t& lines) {
  for (uint32_t i = 0; i < list.Count(); ++i) {
    const Record* record = list.Get(i);
    if (record == nullptr) return Outcome::kFailed;
    if (poll() != 0) return Outcome::kStopped;
    list.ReportPosition(i);
    const auto* entry = record_cast<FileEntry>(record);
    if (entry == nullptr || !wanted(*entry)) continue;
    out.write(printed(entry->full_name().text()));
    out.write('\n');
    ++lines;
  }
  return Outcome::kDone;
}

// The answer of a save that did not come to its end.
int32_t give_up(Outcome outcome, const ExportRow& row) {
  if (outcome == Outcome::kStopped) return 0;
  return refuse("The item pointer is NULL", "Getting list item", row);
}

}  // namespace

int32_t load_file_list(Library& library, const char* file,
                       const unsigned char* option_bytes) {
  const ExportRow& row = row::LoadFileList;
  ItemList* list = library.second_files.get();
  if (list == nullptr) {
    return refuse("The file list pointer is NULL", "Getting list pointer", row);
  }
  if (option_bytes == nullptr) {
    return refuse("The file parameter list pointer is NULL",
                  "Getting file infos", row);
  }
  if (is_empty(file)) return -1;
  list->Clear();
  const Outcome imported = import_names(*list, file);
  if (imported != Outcome::kDone) {
    return imported == Outcome::kStopped ? 0 : -1;
  }
  const FactOptions options(option_bytes);
  if (!derive_names(*list, options) || !gather_facts(*list, options)) return 0;
  return static_cast<int32_t>(list->Count());
}

int32_t save_file_list(Library& library, const char* file) {
  const ExportRow& row = row::SaveFileList;
  ItemList* list = library.second_files.get();
  if (list == nullptr) {
    return refuse("The list pointer is NULL", "Getting list pointer", row);
  }
  if (is_empty(file)) {
    return refuse("The target filename is NULL", "Checking parameters", row);
  }
  OutFile out;
  if (!out.open(file, platform::OutputMode::kTruncate,
                OutFile::LineEnds::kExpand)) {
    return refuse("The target filename could not be opened",
                  "Opening target file", row);
  }
  send_status("Now saving list of files");
  list->ReportPosition(0);
  int32_t lines = 0;
  const Outcome outcome = write_names(
      *list, out, [&] { return list->PollInterruptEvery(100); },
      [](const FileEntry& entry) { return entry.state != 0; }, lines);
  if (outcome != Outcome::kDone) return give_up(outcome, row);
  list->ReportPosition(list->Count());
  return out.close() ? lines : -1;
}

// Intended: a missing name is logged as a missing list, and the first and last
// positions are told on the result list, whatever list is written.
int32_t save_result_file_list(Library& library, int32_t number,
                              const char* file, int32_t flagged) {
  const ExportRow& row = row::SaveResultFileList;
  ItemList* list = library.get_list(number);
  if (list == nullptr) return -1;
  if (is_empty(file)) {
    return refuse("The list pointer is NULL", "Getting result list", row);
  }
  OutFile out;
  if (!out.open(file, platform::OutputMode::kTruncate,
                OutFile::LineEnds::kExpand)) {
    return refuse("The file could not be opened", "Opening target file", row);
  }
  send_status("Now saving list of files");
  ItemList* results = library.results.get();
  if (results != nullptr) results->ReportPosition(0);
  int32_t lines = 0;
  const Outcome outcome = write_names(
      *list, out, [&] { return list->PollInterrupt(); },
      [&](const FileEntry& entry) {
        return (entry.flag != 0) == (flagged != 0);
      },
      lines);
  if (outcome != Outcome::kDone) return give_up(outcome, row);
  if (results != nullptr) results->ReportPosition(results->Count());
  return out.close() ? lines : -1;
}

}  // namespace zenfo
