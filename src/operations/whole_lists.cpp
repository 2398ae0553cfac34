// The operations under "Whole lists of files" in zenfofr130.h.
//
// Tested by tests/contract/compare_test.cpp, tests/contract/match_test.cpp
#include <string>
#include <string_view>

#include "files/columns.h"
#include "files/file_content.h"
#include "files/file_entry.h"
#include "frame/callbacks.h"
#include "operations/operation.h"
#include "operations/walks.h"
#include "platform/files.h"
#include "sorting/list_comparison.h"
#include "text/byte_tables.h"
#include "text/c_text.h"
#include "text/out_file.h"
#include "text/substring.h"
#include "text/whole_word.h"

namespace zenfo {
namespace {

enum class Place { kAnywhere = 0, kStart = 1, kEnd = 2 };

bool is_column(uint32_t field) {
  return field >= static_cast<uint32_t>(kFirstColumn) &&
         field <= static_cast<uint32_t>(kLastColumn);
}

// Looks for a text in one column, file by file.
class ColumnSearch {
 public:
  ColumnSearch(uint32_t field, std::string_view text, bool whole_word,
               bool case_sensitive, int32_t place)
      : field_(field),
        searcher_(text, case_sensitive),
        whole_word_(whole_word),
        place_(place == 1   ? Place::kStart
               : place == 2 ? Place::kEnd
                            : Place::kAnywhere) {}

  bool found_in(const FileEntry& entry) {
    shown_.clear();
    return is_column(field_) &&
           append_column(entry, static_cast<Column>(field_), shown_) &&
           matches(up_to_nul(shown_));
  }

 private:
  // Intended: only one occurrence is judged, the first or, at the end, the
  // last.
  bool matches(std::string_view field) const {
    const char* const end = field.data() + field.size();
    const char* found = searcher_.find(field.data(), end);
    if (found == nullptr) return false;
    if (place_ == Place::kEnd) found = last(found, end);
    const auto start = static_cast<size_t>(found - field.data());
    const size_t behind = start + searcher_.length();
    if (place_ == Place::kStart && start != 0) return false;
    if (place_ == Place::kEnd && behind != field.size()) return false;
    return !whole_word_ ||
           is_whole_word(field.data(), start, behind - 1, field.size()) != 0;
  }

  // Each search continues after the previous occurrence.
  const char* last(const char* found, const char* end) const {
    while (const char* next = searcher_.find(found + searcher_.length(), end)) {
      found = next;
    }
    return found;
  }

  uint32_t field_;
  SubstringSearcher searcher_;
  bool whole_word_;
  Place place_;
  std::string shown_;
};

// Searches one file's text for a string that must be a whole word.
bool holds_word(std::string_view text, const SubstringSearcher& searcher) {
  const char* end = text.data() + text.size();
  const char* found = searcher.find(text.data(), end);
  while (found != nullptr) {
    const auto start = static_cast<size_t>(found - text.data());
    if (is_whole_word(text.data(), start, start + searcher.length() - 1,
                      text.size()) == 1) {
      return true;
    }
    found = searcher.find(found + 1, end);
  }
  return false;
}

// Looks for a text in the content, file by file.
class TextSearch {
 public:
  TextSearch(const char* text, bool whole_word, bool case_sensitive)
      : searcher_(text, case_sensitive), whole_word_(whole_word) {
    content_.set_interrupt_hook(interr);
    content_.allow_views();
  }

  // False also for a file that cannot be loaded.
  bool found_in(const char* path) {
    return content_.load_file_content(path, &nearby_) > 0 &&
           holds(content_.text());
  }

 private:
  bool holds(std::string_view text) const {
    if (whole_word_) return holds_word(text, searcher_);
    return searcher_.find(text.data(), text.data() + text.size()) != nullptr;
  }

  FileContent content_;
  platform::NearbyFolder nearby_;
  SubstringSearcher searcher_;
  bool whole_word_;
};

// Appends a field as it is written.
// Intended: a missing file name is written as "(null)", any other field that is
// not available is empty.
void append_field(const FileEntry& entry, int field, std::string& line) {
  const size_t start = line.size();
  const auto column = static_cast<Column>(field);
  if (!append_column(entry, column, line) && column == Column::kFileName) {
    line += printed(std::nullopt);
  }
  line.resize(start + up_to_nul(std::string_view(line).substr(start)).size());
}

void append_line(const FileEntry& entry, std::string_view separator,
                 const unsigned char* columns, std::string& line) {
  bool first = true;
  for (int field = kFirstColumn; field <= kLastColumn; ++field) {
    if (columns[field] == 0) continue;
    if (!first) line += separator;
    append_field(entry, field, line);
    first = false;
  }
  if (!first) line += "\r\n";
}

}  // namespace

ZENFO_ENTRY CompareLists(uint32_t option, int32_t keep) {
  return run<row::CompareLists>([&](Library& library) {
    if (library.run_files == nullptr || library.pairs == nullptr) return -1;
    compare_lists(*library.run_files, *library.pairs, option, keep != 0);
    return 1;
  });
}

ZENFO_ENTRY FindInList(int32_t number, uint32_t field, const char* text,
                       uint32_t whole_word, uint32_t case_sensitive,
                       uint32_t start, int32_t position, uint32_t first_only,
                       int32_t select) {
  return run<row::FindInList>([&](Library& library) {
    ItemList* list = library.get_list(number);
    if (list == nullptr || is_empty(text) || start >= list->count()) return -1;
    refresh_byte_tables();
    ColumnSearch search(field, text, whole_word == 1, case_sensitive == 1,
                        position);
    const uint32_t count = list->count();
    if (select != 0) {
      list->note_change();
      for (uint32_t i = 0; i < count; ++i) list->get(i)->state = 0;
    }
    int32_t found = 0;
    for (uint32_t i = start; i < count; ++i) {
      Record* record = list->get(i);
      const auto* entry = record_cast<FileEntry>(record);
      if (entry != nullptr && search.found_in(*entry)) {
        if (select != 0) record->state = 1;
        if (first_only != 0) return static_cast<int32_t>(i);
        ++found;
      }
      if (!list->goes_on_after(i)) break;
    }
    return first_only != 0 ? -1 : found;
  });
}

ZENFO_ENTRY FindInFiles(int32_t number, const char* text,
                        int32_t clear_selection, int32_t whole_word,
                        int32_t case_sensitive) {
  return run<row::FindInFiles>([&](Library& library) {
    ItemList* list = library.get_list(number);
    if (list == nullptr || is_empty(text)) return -1;
    const uint32_t count = list->count();
    send_status("Now searching string in files");
    refresh_byte_tables();
    if (clear_selection != 0) {
      for (uint32_t i = 0; i < count; ++i) list->get(i)->state = 0;
    }
    TextSearch search(text, whole_word != 0, case_sensitive != 0);
    int32_t files = 0;
    for (uint32_t i = 0; i < count; ++i) {
      Record* record = list->get(i);
      if (record == nullptr) return -1;
      if (const auto* entry = record_cast<FileEntry>(record)) {
        // A copy, because the host may rename the entry while it loads.
        const SharedText path = entry->full_name();
        if (search.found_in(path.c_str())) {
          record->state = 1;
          ++files;
        }
      }
      // Intended: the answer does not stop the walk.
      list->poll_interrupt_every(1);
      list->report_position(i);
    }
    return files;
  });
}

ZENFO_ENTRY SaveSelection(int32_t number, const char* file,
                          const char* separator, const unsigned char* columns) {
  return run<row::SaveSelection>([&](Library& library) {
    ItemList* list = library.get_list(number);
    if (list == nullptr || is_empty(file) || is_empty(separator) ||
        columns == nullptr) {
      return -1;
    }
    send_status("Now saving selection to file");
    OutFile out;
    if (!out.open(file, platform::OutputMode::kTruncate,
                  OutFile::LineEnds::kRaw)) {
      return -1;
    }
    std::string line;
    int32_t saved = 0;
    visit_entries(*list, [&](const FileEntry& entry) {
      if (entry.state != 1) return;
      line.clear();
      append_line(entry, separator, columns, line);
      out.write(line);
      ++saved;
    });
    return out.close() ? saved : -1;
  });
}

// Intended: does nothing; kept for hosts that call it.
ZENFO_ENTRY CopyToClipboard() {
  return run<row::CopyToClipboard>([](Library&) { return 0; });
}

}  // namespace zenfo
