#include "files/find_ops.h"

#include <memory>
#include <optional>
#include <string_view>
#include <vector>

#include "files/file_entry.h"
#include "files/file_finder.h"
#include "frame/callbacks.h"
#include "frame/rows.h"
#include "text/byte_tables.h"
#include "text/out_file.h"

namespace zenfo {
namespace {

// The lists that may hold file entries; any other counts as missing.
ItemList* file_list(Library& library, int32_t number) {
  ItemList* list = library.get_list(number);
  switch (number) {
    case ZENFO_LIST_FILES_1:
    case ZENFO_LIST_FILES:
    case ZENFO_LIST_PAIRS:
    case ZENFO_LIST_RESULT:
    case ZENFO_LIST_NO_MATCH:
    case ZENFO_LIST_ERROR:
      return list;
    default:
      return nullptr;
  }
}

int32_t refuse(const char* message, const char* context, const ExportRow& row) {
  ReportError(message, context, row.routine);
  return -1;
}

int32_t refuse_missing_options(const ExportRow& row) {
  return refuse("The file parameter list pointer is NULL", "Getting file infos",
                row);
}

// The walk with an output file: paths go there, one a line.
int32_t write_names(ItemList& list, std::string_view specification,
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

int32_t append_names(ItemList& list, std::string_view specification) {
  FileFinder finder(list, [&](std::string_view folder, std::string_view name) {
    list.Append(std::make_unique<FileEntry>(
        SharedText::joined(folder, platform::kPathSeparator, name)));
    return true;
  });
  return finder.find(specification);
}

// First pass over the whole list: flags and file names. False when stopped.
bool derive_names(ItemList& list, const FactOptions& options) {
  for (uint32_t i = 0; i < list.Count(); ++i) {
    if (auto* entry = record_cast<FileEntry>(list.Get(i))) {
      const bool named = !options.file_name || entry->derive_file_name();
      entry->flag = named ? 0 : -1;
    }
    if (list.PollInterruptEvery(100) != 0) return false;
    // Intended: this pass reports a reset record, not its position.
    list.ReportReset();
  }
  return true;
}

// Second pass: all other facts. False when stopped.
bool gather_facts(ItemList& list, const FactOptions& options) {
  send_status("Now retrieving files attributes");
  platform::NearbyFolder nearby;
  for (uint32_t i = 0; i < list.Count(); ++i) {
    auto* entry = record_cast<FileEntry>(list.Get(i));
    if (entry != nullptr && !entry->gather(options, &nearby)) entry->flag = -1;
    if (list.PollInterruptEvery(100) != 0) return false;
    list.ReportPosition(i);
  }
  list.ReportPosition(list.Count());
  return true;
}

// The host's answers to the question of AddFileToList.
enum class Answer : int32_t { kSkip = 0, kAdd = 1, kSkipAll = 2, kAddAll = 3 };

// The names of a source's entries, in the order of its positions.
class SourceNames {
 public:
  // A list that is added to itself loses its arranged order with the first
  // entry appended: its names are taken while it has it.
  SourceNames(ItemList& source, const ItemList& target)
      : source_(source), count_(source.Count()) {
    if (&source != &target) return;
    taken_.reserve(count_);
    for (uint32_t i = 0; i < count_; ++i) taken_.push_back(name_now(i));
  }

  uint32_t count() const { return count_; }
  // None for a record of another kind. A copy, as the host may change the
  // entry while it is asked.
  std::optional<SharedText> name(uint32_t i) {
    return taken_.empty() ? name_now(i) : taken_[i];
  }

 private:
  std::optional<SharedText> name_now(uint32_t i) {
    const auto* entry = record_cast<FileEntry>(source_.Get(i));
    if (entry == nullptr) return std::nullopt;
    return entry->full_name();
  }

  ItemList& source_;
  uint32_t count_;
  std::vector<std::optional<SharedText>> taken_;
};

// Asks about each entry of the source and appends those taken to the target.
// Answers the number added, -1 for an invalid answer.
int32_t ask_and_append(ItemList& source, ItemList& target) {
  SourceNames names(source, target);
  int32_t added = 0;
  bool ask = true;
  for (uint32_t i = 0; i < names.count(); ++i) {
    const std::optional<SharedText> name = names.name(i);
    if (!name) continue;
    if (ask) {
      const int32_t answer = ask_about_file(name->view());
      if (answer < 0 || answer > 3) {
        return refuse("Invalid option", "Checking user option",
                      row::AddFileToList);
      }
      if (answer == static_cast<int32_t>(Answer::kSkipAll)) break;
      if (answer == static_cast<int32_t>(Answer::kSkip)) continue;
      ask = answer != static_cast<int32_t>(Answer::kAddAll);
    }
    target.Append(std::make_unique<FileEntry>(*name));
    ++added;
  }
  return added;
}

// The facts of the last `added` entries. False when stopped.
bool gather_added(ItemList& list, uint32_t added, const FactOptions& options) {
  send_status("Now retrieving files attributes");
  platform::NearbyFolder nearby;
  const uint32_t first = list.Count() - added;
  for (uint32_t i = 0; i < added; ++i) {
    if (auto* entry = record_cast<FileEntry>(list.Get(first + i))) {
      const bool named = !options.file_name || entry->derive_file_name();
      const bool gathered = entry->gather(options, &nearby);
      entry->flag = named && gathered ? 0 : -1;
    }
    if (list.PollInterruptEvery(100) != 0) return false;
    list.ReportPositionOf(i, added);
  }
  list.ReportPositionOf(added, added);
  return true;
}

}  // namespace

int32_t find_files(Library& library, int32_t number, const char* specification,
                   const unsigned char* option_bytes, const char* output_file) {
  ItemList* list = file_list(library, number);
  if (list == nullptr) {
    return refuse("The list pointer is NULL", "Getting list pointer",
                  row::FindFiles);
  }
  if (option_bytes == nullptr) return refuse_missing_options(row::FindFiles);
  if (output_file == nullptr) {
    return refuse("The output filename pointer is NULL",
                  "Getting target filename", row::FindFiles);
  }
  send_status("Now looking for files");
  refresh_byte_tables();
  const std::string_view search = specification != nullptr ? specification : "";
  if (*output_file != '\0') return write_names(*list, search, output_file);
  const int32_t found = append_names(*list, search);
  if (found < 0) return found;
  const FactOptions options(option_bytes);
  if (!derive_names(*list, options)) return 0;
  return gather_facts(*list, options) ? found : 0;
}

int32_t add_file_to_list(Library& library, int32_t source_number,
                         int32_t target_number,
                         const unsigned char* option_bytes) {
  ItemList* source = file_list(library, source_number);
  if (source == nullptr) {
    return refuse("The source list pointer is NULL", "Getting list pointer",
                  row::AddFileToList);
  }
  ItemList* target = file_list(library, target_number);
  if (target == nullptr) {
    return refuse("The target list pointer is NULL", "Getting list pointer",
                  row::AddFileToList);
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
}

}  // namespace zenfo
