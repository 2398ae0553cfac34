#include "search/match_ops.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <string_view>

#include "files/file_content.h"
#include "files/file_entry.h"
#include "frame/callbacks.h"
#include "pattern/match_record.h"
#include "text/byte_tables.h"
#include "text/substring.h"
#include "text/whole_word.h"

namespace zenfo {
namespace {

const MatchRecord* match_at(Library& library, int32_t number, uint32_t index) {
  ItemList* list = library.get_list(number);
  return list != nullptr ? record_cast<MatchRecord>(list->Get(index)) : nullptr;
}

// The frame of every text accessor: the buffer is emptied before anything is
// looked up.
template <class Put>
int32_t put_match(Library& library, int32_t list, uint32_t index, char* buffer,
                  Put put) {
  if (buffer == nullptr) return -1;
  *buffer = '\0';
  const MatchRecord* match = match_at(library, list, index);
  return match != nullptr ? put(*match) : -1;
}

int32_t put_number(char* buffer, uint32_t number) {
  constexpr int kMostDigits = std::numeric_limits<uint32_t>::digits10 + 1;
  *std::to_chars(buffer, buffer + kMostDigits, number).ptr = '\0';
  return 1;
}

// How many bytes are copied of a text of `length`: all, when the mark would
// still fit behind it, else as many as the buffer's size says.
size_t shortened(uint32_t length, uint32_t size) {
  return uint64_t{length} + 5 <= size ? length : size;
}

// Ends the copy and marks it when it is shorter than the match.
// Intended: the mark runs over the stated size by up to five bytes.
int32_t finish_copy(char* buffer, size_t copied, uint32_t match_length) {
  buffer[copied] = '\0';
  if (copied > 0 && copied < match_length) std::strcat(buffer, " ...");
  return 1;
}

// The bytes that may be read from a match's start on.
size_t readable(Library& library, int32_t number, const MatchRecord& match) {
  const PatternContext* context = library.get_context(number);
  const char* end = context != nullptr ? context->text_end() : nullptr;
  if (end == nullptr || match.begin() == nullptr) return 0;
  return end > match.begin() ? static_cast<size_t>(end - match.begin()) : 0;
}

// Searches one file's text for a string that must stand as a word.
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

}  // namespace

int32_t get_match_offset(Library& library, int32_t list, uint32_t index,
                         char* buffer, uint32_t) {
  return put_match(library, list, index, buffer, [&](const MatchRecord& match) {
    return put_number(buffer, match.offset);
  });
}

int32_t get_match_length(Library& library, int32_t list, uint32_t index,
                         char* buffer, uint32_t) {
  return put_match(library, list, index, buffer, [&](const MatchRecord& match) {
    return put_number(buffer, match.length);
  });
}

// Intended: a size of the length to the length + 4 copies bytes behind the
// match too, as far as the content goes.
int32_t get_match_text(Library& library, int32_t list, uint32_t index,
                       char* buffer, uint32_t size) {
  return put_match(library, list, index, buffer, [&](const MatchRecord& match) {
    const size_t copied =
        std::min(shortened(match.length, size), readable(library, list, match));
    if (copied > 0) std::memcpy(buffer, match.begin(), copied);
    return finish_copy(buffer, copied, match.length);
  });
}

// Intended: the mark depends on the match's length, not the replacement's.
int32_t get_match_replace(Library& library, int32_t list, uint32_t index,
                          char* buffer, uint32_t size) {
  return put_match(library, list, index, buffer, [&](const MatchRecord& match) {
    const char* replacement = match.replacement();
    if (replacement == nullptr) return finish_copy(buffer, 0, match.length);
    const size_t copied = shortened(match.replacement_length(), size);
    // Up to four of the zero bytes behind the replacement come along.
    std::memcpy(buffer, replacement, copied);
    return finish_copy(buffer, copied, match.length);
  });
}

int32_t get_match_flag(Library& library, int32_t list, uint32_t index) {
  const MatchRecord* match = match_at(library, list, index);
  return match != nullptr ? match->flag : -1;
}

int32_t find_in_files(Library& library, int32_t number, const char* text,
                      int32_t clear_selection, int32_t whole_word,
                      int32_t case_sensitive) {
  ItemList* list = library.get_list(number);
  if (list == nullptr || text == nullptr || *text == '\0') return -1;
  const uint32_t count = list->Count();
  send_status("Now searching string in files");
  refresh_byte_tables();
  if (clear_selection != 0) {
    for (uint32_t i = 0; i < count; ++i) list->Get(i)->state = 0;
  }
  FileContent content;
  content.set_interrupt_hook(interr);
  content.allow_views();
  platform::NearbyFolder nearby;
  const SubstringSearcher searcher(text, case_sensitive != 0);
  auto holds = [&](std::string_view searched) {
    if (whole_word != 0) return holds_word(searched, searcher);
    return searcher.find(searched.data(), searched.data() + searched.size()) !=
           nullptr;
  };
  int32_t files = 0;
  for (uint32_t i = 0; i < count; ++i) {
    Record* record = list->Get(i);
    if (record == nullptr) return -1;
    if (const auto* entry = record_cast<FileEntry>(record)) {
      // A copy, as the host may rename the entry while it loads.
      const SharedText path = entry->full_name();
      if (content.load_file_content(path.c_str(), &nearby) > 0 &&
          holds(content.text())) {
        record->state = 1;
        ++files;
      }
    }
    // Intended: the answer does not stop the walk.
    list->PollInterruptEvery(1);
    list->ReportPosition(i);
  }
  return files;
}

}  // namespace zenfo
