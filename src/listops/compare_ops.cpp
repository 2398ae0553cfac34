// CompareLists sorts both lists by a key and walks them side by side. Lists
// that share nothing take one step for each entry, as the walk leaves behind
// what is smaller than all that is still to come; where a key is no true order
// nobody can tell, and every entry of one list may meet every one of the
// other.
#include "listops/compare_ops.h"

#include <new>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/columns.h"
#include "files/file_entry.h"
#include "frame/callbacks.h"
#include "listops/keyed_sort.h"
#include "text/byte_tables.h"
#include "text/c_text.h"
#include "text/out_file.h"
#include "text/substring.h"
#include "text/whole_word.h"

namespace zenfo {
namespace {

constexpr uint32_t kLastCompareOption = 18;

// ---- CompareLists -----------------------------------------------------------

void mark(Record& record, int32_t value) {
  record.state = static_cast<uint32_t>(value);
  if (auto* entry = record_cast<FileEntry>(&record)) entry->flag = value;
}

void clear_marks(ItemList& list) {
  for (uint32_t i = 0; i < list.Count(); ++i) {
    mark(*list.Get(i), 0);
    list.ReportPosition(i);
  }
}

void turn_selection(ItemList& list) {
  for (uint32_t i = 0; i < list.Count(); ++i) {
    Record& record = *list.Get(i);
    record.state = record.state == 0 ? 1 : 0;
  }
}

// Whether b, which goes before a, goes before all that are sorted behind a
// too.
bool left_behind(const NumberValue&, const NumberValue&) { return true; }
bool left_behind(const TextValue&, const TextValue&) { return true; }
bool left_behind(const TimeValue&, const TimeValue&) { return false; }
bool left_behind(const FullValue& a, const FullValue& b) {
  return a.name.rank != b.name.rank || a.facts.size != b.facts.size;
}

// The side of one list in the comparison: its entries by position.
template <class Value>
class Side {
 public:
  Side(ItemList& list, std::span<const Value> values)
      : list_(list), values_(values), order_(sorted_order(values, 0)) {
    // A list of fewer than two entries stays as it is.
    if (count() > 1 && list_.Arrange(order_.data()) != 1) {
      throw std::bad_alloc();
    }
  }

  uint32_t count() const { return static_cast<uint32_t>(order_.size()); }
  const Value& value(uint32_t i) const { return values_[order_[i]]; }
  ItemList& list() { return list_; }
  void mark_at(uint32_t i) { mark(*list_.Get(i), 1); }

  // Marks the entries behind one that equal it; the first that does not.
  uint32_t mark_equal(uint32_t reference) {
    uint32_t i = reference + 1;
    for (; i < count(); ++i) {
      if (compare_values(value(reference), value(i)) != 0) break;
      mark_at(i);
    }
    return i;
  }

 private:
  ItemList& list_;
  std::span<const Value> values_;
  std::vector<uint32_t> order_;
};

template <class Value>
class Comparison {
 public:
  Comparison(ItemList& reference, ItemList& compared,
             std::span<const Value> values)
      : reference_(reference, values.first(reference.Count())),
        compared_(compared, values.subspan(reference.Count())) {}

  void run() {
    for (uint32_t i = 0; i < reference_.count();) i = step(i);
  }

 private:
  // Looks for an equal of one entry; the entry to go on with.
  uint32_t step(uint32_t i) {
    for (uint32_t j = start_; j < compared_.count(); ++j) {
      const Value& a = reference_.value(i);
      const Value& b = compared_.value(j);
      const int32_t answer = compare_values(a, b);
      if (answer == 0) return match(i, j);
      if (answer < 0) {
        start_ = j;
        return i + 1;
      }
      if (j == start_ && left_behind(a, b)) ++start_;
    }
    return i + 1;
  }

  uint32_t match(uint32_t i, uint32_t j) {
    reference_.mark_at(i);
    compared_.mark_at(j);
    // Intended: a stop drops the equals of this entry only.
    if (compared_.list().PollInterruptEvery(100) != 0) return i + 1;
    compared_.list().ReportPosition(j);
    const uint32_t next = reference_.mark_equal(i);
    const uint32_t behind = compared_.mark_equal(j);
    // Intended: at the list's end the start stays where it was.
    if (behind < compared_.count()) start_ = behind;
    return next;
  }

  Side<Value> reference_;
  Side<Value> compared_;
  uint32_t start_ = 0;
};

// Sorts both lists and compares them. The values are read before: marking
// entries does not change how they compare, even by state.
void compare_by_key(ItemList& reference, ItemList& compared,
                    const SortKey& key) {
  send_status("Now sorting lists");
  auto records = reference.Records();
  const auto others = compared.Records();
  records.insert(records.end(), others.begin(), others.end());
  with_values(key, records, [&](const auto& values) {
    Comparison comparison(reference, compared, std::span(values));
    send_status("Now comparing lists");
    comparison.run();
  });
}

// ---- FindInList -------------------------------------------------------------

enum class Place { kAnywhere = 0, kStart = 1, kEnd = 2 };

class FieldSearch {
 public:
  FieldSearch(std::string_view text, bool case_sensitive, bool whole_word,
              int32_t place)
      : searcher_(text, case_sensitive),
        whole_word_(whole_word),
        place_(place == 1   ? Place::kStart
               : place == 2 ? Place::kEnd
                            : Place::kAnywhere) {}

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

 private:
  // Each search goes on behind the occurrence before.
  const char* last(const char* found, const char* end) const {
    while (const char* next = searcher_.find(found + searcher_.length(), end)) {
      found = next;
    }
    return found;
  }

  SubstringSearcher searcher_;
  bool whole_word_;
  Place place_;
};

bool is_column(uint32_t field) {
  return field >= static_cast<uint32_t>(kFirstColumn) &&
         field <= static_cast<uint32_t>(kLastColumn);
}

// ---- SaveSelection ----------------------------------------------------------

// Appends a field as it is written.
// Intended: a missing file name is written as "(null)", any other field that
// cannot be had is empty.
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

bool is_empty(const char* text) { return text == nullptr || *text == '\0'; }

}  // namespace

int32_t compare_lists(Library& library, uint32_t option, int32_t keep) {
  ItemList* reference = library.second_files.get();
  ItemList* compared = library.pairs.get();
  if (reference == nullptr || compared == nullptr) return -1;
  if (option > kLastCompareOption) option = 0;
  refresh_byte_tables();
  send_status("Now de-selecting all entries");
  clear_marks(*reference);
  clear_marks(*compared);
  compare_by_key(*reference, *compared, kSortTable.at(option));
  if (keep == 0) {
    turn_selection(*reference);
    turn_selection(*compared);
  }
  return 1;
}

int32_t find_in_list(Library& library, int32_t number, uint32_t field,
                     const char* text, uint32_t whole_word,
                     uint32_t case_sensitive, uint32_t start, int32_t position,
                     uint32_t first_only, int32_t select) {
  ItemList* list = library.get_list(number);
  if (list == nullptr || is_empty(text) || start >= list->Count()) return -1;
  refresh_byte_tables();
  const FieldSearch search(text, case_sensitive == 1, whole_word == 1,
                           position);
  const uint32_t count = list->Count();
  if (select != 0) {
    for (uint32_t i = 0; i < count; ++i) list->Get(i)->state = 0;
  }
  std::string shown;
  auto matches = [&](const FileEntry* entry) {
    shown.clear();
    return entry != nullptr && is_column(field) &&
           append_column(*entry, static_cast<Column>(field), shown) &&
           search.matches(up_to_nul(shown));
  };
  int32_t found = 0;
  for (uint32_t i = start; i < count; ++i) {
    Record* record = list->Get(i);
    if (matches(record_cast<FileEntry>(record))) {
      if (select != 0) record->state = 1;
      if (first_only != 0) return static_cast<int32_t>(i);
      ++found;
    }
    if (list->PollInterruptEvery(100) != 0) break;
    list->ReportPosition(i);
  }
  return first_only != 0 ? -1 : found;
}

int32_t save_selection(Library& library, int32_t number, const char* file,
                       const char* separator, const unsigned char* columns) {
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
  for (uint32_t i = 0; i < list->Count(); ++i) {
    const auto* entry = record_cast<FileEntry>(list->Get(i));
    if (entry != nullptr && entry->state == 1) {
      line.clear();
      append_line(*entry, separator, columns, line);
      out.write(line);
      ++saved;
    }
    if (list->PollInterruptEvery(100) != 0) break;
    list->ReportPosition(i);
  }
  return out.close() ? saved : -1;
}

int32_t copy_to_clipboard(Library&) { return 0; }

}  // namespace zenfo
