// The operations under "Filling file lists" in zenfofr130.h.
//
// Lists get their entries first and the facts of the entries afterwards, in
// separate walks that the host can stop.
//
// Tested by tests/contract/find_files_test.cpp,
// tests/contract/list_file_test.cpp
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "files/file_content.h"
#include "files/file_entry.h"
#include "files/file_finder.h"
#include "frame/callbacks.h"
#include "operations/operation.h"
#include "operations/walks.h"
#include "text/byte_tables.h"
#include "text/c_text.h"
#include "text/out_file.h"
#include "text/records.h"

namespace zenfo {
namespace {

// The lists that may contain file entries; any other counts as missing.
ItemList* file_list(Library& library, int32_t number) {
  ItemList* list = library.get_list(number);
  switch (number) {
    case ZENFO_LIST_OTHER_FILES:
    case ZENFO_LIST_RUN_FILES:
    case ZENFO_LIST_PAIRS:
    case ZENFO_LIST_RESULT:
    case ZENFO_LIST_NO_MATCH:
    case ZENFO_LIST_ERROR:
      return list;
    default:
      return nullptr;
  }
}

int32_t refuse_missing_options(const ExportRow& row) {
  return refuse(row, "The file parameter list pointer is NULL",
                "Getting file infos");
}

void derive_name(FileEntry& entry, const FactOptions& options) {
  const bool named = !options.file_name || entry.derive_file_name();
  entry.flag = named ? 0 : -1;
}

// ---- FindFiles --------------------------------------------------------------

// The walk with an output file: paths go there, one a line.
int32_t write_found(ItemList& list, std::string_view specification,
                    const char* output_file) {
  OutFile file;
  if (!file.open(output_file, platform::OutputMode::kTruncate,
                 OutFile::LineEnds::kRaw)) {
    return -1;
  }
  FileFinder finder(list, [&](std::string_view folder, std::string_view name) {
    return file.write(folder) && file.write(platform::kPathSeparator) &&
           file.write(name) && file.write("\r\n");
  });
  const int32_t found = finder.find(specification);
  return file.close() ? found : -1;
}

int32_t append_found(ItemList& list, std::string_view specification) {
  FileFinder finder(list, [&](std::string_view folder, std::string_view name) {
    list.append(std::make_unique<FileEntry>(
        SharedText::joined(folder, platform::kPathSeparator, name)));
    return true;
  });
  return finder.find(specification);
}

// False when stopped.
bool name_all(ItemList& list, const FactOptions& options) {
  for (uint32_t i = 0; i < list.count(); ++i) {
    if (auto* entry = record_cast<FileEntry>(list.get(i))) {
      derive_name(*entry, options);
    }
    if (list.poll_interrupt_every(100) != 0) return false;
    // Intended: this pass reports a reset record, not its position.
    list.report_reset();
  }
  return true;
}

bool gather_all(ItemList& list, const FactOptions& options) {
  send_status("Now retrieving files attributes");
  platform::NearbyFolder nearby;
  return for_each_entry(list, [&](FileEntry& entry) {
    if (!entry.gather(options, &nearby)) entry.flag = -1;
  });
}

// ---- AddFileToList ----------------------------------------------------------

// The host's answers to the question of AddFileToList.
enum class Answer : int32_t { kSkip = 0, kAdd = 1, kSkipAll = 2, kAddAll = 3 };

// The names of a source's entries, in the order of its positions.
class SourceNames {
 public:
  explicit SourceNames(ItemList& source)
      : source_(source), count_(source.count()) {}

  // For a list that is added to itself: it loses its sorted order with the
  // first entry appended, so its names are taken before.
  void take_all() {
    taken_.reserve(count_);
    for (uint32_t i = 0; i < count_; ++i) taken_.push_back(name_now(i));
  }

  uint32_t count() const { return count_; }
  // None for a record of another kind. A copy, because the host may change the
  // entry while it is asked.
  std::optional<SharedText> name(uint32_t i) {
    return taken_.empty() ? name_now(i) : taken_[i];
  }

 private:
  std::optional<SharedText> name_now(uint32_t i) {
    const auto* entry = record_cast<FileEntry>(source_.get(i));
    if (entry == nullptr) return std::nullopt;
    return entry->full_name();
  }

  ItemList& source_;
  uint32_t count_;
  std::vector<std::optional<SharedText>> taken_;
};

// Asks about each entry of the source and appends the accepted ones to the
// target.
// Returns the number added, -1 for an invalid answer.
int32_t ask_and_append(ItemList& source, ItemList& target) {
  SourceNames names(source);
  if (&source == &target) names.take_all();
  int32_t added = 0;
  bool ask = true;
  for (uint32_t i = 0; i < names.count(); ++i) {
    const std::optional<SharedText> name = names.name(i);
    if (!name) continue;
    if (ask) {
      const int32_t answer = ask_about_file(name->view());
      if (answer < 0 || answer > 3) {
        return refuse(row::AddFileToList, "Invalid option",
                      "Checking user option");
      }
      if (answer == static_cast<int32_t>(Answer::kSkipAll)) break;
      if (answer == static_cast<int32_t>(Answer::kSkip)) continue;
      ask = answer != static_cast<int32_t>(Answer::kAddAll);
    }
    target.append(std::make_unique<FileEntry>(*name));
    ++added;
  }
  return added;
}

// The facts of the last `added` entries. False when stopped.
bool gather_added(ItemList& list, uint32_t added, const FactOptions& options) {
  send_status("Now retrieving files attributes");
  platform::NearbyFolder nearby;
  const uint32_t first = list.count() - added;
  for (uint32_t i = 0; i < added; ++i) {
    if (auto* entry = record_cast<FileEntry>(list.get(first + i))) {
      const bool named = !options.file_name || entry->derive_file_name();
      const bool gathered = entry->gather(options, &nearby);
      entry->flag = named && gathered ? 0 : -1;
    }
    if (list.poll_interrupt_every(100) != 0) return false;
    list.report_position_of(i, added);
  }
  list.report_position_of(added, added);
  return true;
}

// ---- LoadFileList -----------------------------------------------------------

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
    list.append(std::make_unique<FileEntry>(SharedText(name)));
    if (list.poll_interrupt() != 0) return Outcome::kStopped;
  }
  list.build_index();
  return Outcome::kDone;
}

bool name_imported(ItemList& list, const FactOptions& options) {
  send_status("Now processing filenames");
  return for_each_entry(list,
                        [&](FileEntry& entry) { derive_name(entry, options); });
}

// An entry whose file no longer exists stays, flagged.
bool gather_imported(ItemList& list, const FactOptions& options) {
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

// ---- SaveFileList, SaveResultFileList ---------------------------------------

// The walk of both saves: polls, reports the position, and writes and counts
// the wanted lines.
template <class Poll, class Wanted>
Outcome write_names(ItemList& list, OutFile& out, Poll poll, Wanted wanted,
                    int32_t& lines) {
  for (uint32_t i = 0; i < list.count(); ++i) {
    const Record* record = list.get(i);
    if (record == nullptr) return Outcome::kFailed;
    if (poll() != 0) return Outcome::kStopped;
    list.report_position(i);
    const auto* entry = record_cast<FileEntry>(record);
    if (entry == nullptr || !wanted(*entry)) continue;
    out.write(printed(entry->full_name().text()));
    out.write('\n');
    ++lines;
  }
  return Outcome::kDone;
}

// The answer of a save that ended early.
int32_t give_up(Outcome outcome, const ExportRow& row) {
  if (outcome == Outcome::kStopped) return 0;
  return refuse(row, "The item pointer is NULL", "Getting list item");
}

}  // namespace

ZENFO_ENTRY FindFiles(int32_t number, const char* specification,
                      const unsigned char* option_bytes,
                      const char* output_file) {
  return run<row::FindFiles>([&](Library& library) {
    ItemList* list = file_list(library, number);
    if (list == nullptr) {
      return refuse(row::FindFiles, "The list pointer is NULL",
                    "Getting list pointer");
    }
    if (option_bytes == nullptr) return refuse_missing_options(row::FindFiles);
    if (output_file == nullptr) {
      return refuse(row::FindFiles, "The output filename pointer is NULL",
                    "Getting target filename");
    }
    send_status("Now looking for files");
    refresh_byte_tables();
    const std::string_view search = or_empty(specification);
    if (*output_file != '\0') return write_found(*list, search, output_file);
    const int32_t found = append_found(*list, search);
    if (found < 0) return found;
    const FactOptions options(option_bytes);
    if (!name_all(*list, options)) return 0;
    return gather_all(*list, options) ? found : 0;
  });
}

ZENFO_ENTRY AddFileToList(int32_t source_number, int32_t target_number,
                          const unsigned char* option_bytes) {
  return run<row::AddFileToList>([&](Library& library) {
    ItemList* source = file_list(library, source_number);
    if (source == nullptr) {
      return refuse(row::AddFileToList, "The source list pointer is NULL",
                    "Getting list pointer");
    }
    ItemList* target = file_list(library, target_number);
    if (target == nullptr) {
      return refuse(row::AddFileToList, "The target list pointer is NULL",
                    "Getting list pointer");
    }
    if (option_bytes == nullptr) {
      return refuse_missing_options(row::AddFileToList);
    }
    send_status("Now adding files");
    const int32_t added = ask_and_append(*source, *target);
    if (added < 0) return added;
    return gather_added(*target, static_cast<uint32_t>(added),
                        FactOptions(option_bytes))
               ? added
               : 0;
  });
}

ZENFO_ENTRY LoadFileList(const char* file, const unsigned char* option_bytes) {
  return run<row::LoadFileList>([&](Library& library) {
    const ExportRow& row = row::LoadFileList;
    ItemList* list = library.run_files.get();
    if (list == nullptr) {
      return refuse(row, "The file list pointer is NULL",
                    "Getting list pointer");
    }
    if (option_bytes == nullptr) return refuse_missing_options(row);
    if (is_empty(file)) return -1;
    list->clear();
    const Outcome imported = import_names(*list, file);
    if (imported != Outcome::kDone) {
      return imported == Outcome::kStopped ? 0 : -1;
    }
    const FactOptions options(option_bytes);
    if (!name_imported(*list, options)) return 0;
    if (!gather_imported(*list, options)) return 0;
    return static_cast<int32_t>(list->count());
  });
}

ZENFO_ENTRY SaveFileList(const char* file) {
  return run<row::SaveFileList>([&](Library& library) {
    const ExportRow& row = row::SaveFileList;
    ItemList* list = library.run_files.get();
    if (list == nullptr) {
      return refuse(row, "The list pointer is NULL", "Getting list pointer");
    }
    if (is_empty(file)) {
      return refuse(row, "The target filename is NULL", "Checking parameters");
    }
    OutFile out;
    if (!out.open(file, platform::OutputMode::kTruncate,
                  OutFile::LineEnds::kExpand)) {
      return refuse(row, "The target filename could not be opened",
                    "Opening target file");
    }
    send_status("Now saving list of files");
    list->report_position(0);
    int32_t lines = 0;
    const Outcome outcome = write_names(
        *list, out, [&] { return list->poll_interrupt_every(100); },
        [](const FileEntry& entry) { return entry.state != 0; }, lines);
    if (outcome != Outcome::kDone) return give_up(outcome, row);
    list->report_position(list->count());
    return out.close() ? lines : -1;
  });
}

// Intended: a missing name is logged as a missing list, and the first and last
// positions are reported on the result list, whatever list is written.
ZENFO_ENTRY SaveResultFileList(int32_t number, const char* file,
                               int32_t flagged) {
  return run<row::SaveResultFileList>([&](Library& library) {
    const ExportRow& row = row::SaveResultFileList;
    ItemList* list = library.get_list(number);
    if (list == nullptr) return -1;
    if (is_empty(file)) {
      return refuse(row, "The list pointer is NULL", "Getting result list");
    }
    OutFile out;
    if (!out.open(file, platform::OutputMode::kTruncate,
                  OutFile::LineEnds::kExpand)) {
      return refuse(row, "The file could not be opened", "Opening target file");
    }
    send_status("Now saving list of files");
    ItemList* results = library.results.get();
    if (results != nullptr) results->report_position(0);
    int32_t lines = 0;
    const Outcome outcome = write_names(
        *list, out, [&] { return list->poll_interrupt(); },
        [&](const FileEntry& entry) {
          return (entry.flag != 0) == (flagged != 0);
        },
        lines);
    if (outcome != Outcome::kDone) return give_up(outcome, row);
    if (results != nullptr) results->report_position(results->count());
    return out.close() ? lines : -1;
  });
}

}  // namespace zenfo
