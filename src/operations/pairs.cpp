// The operations under "String pairs and replace values" in zenfofr130.h.
//
// The files are lines ended by CR LF; of pairs, the find string, a tab and the
// replace string. Nothing is escaped.
//
// Tested by tests/contract/pairs_test.cpp
#include <memory>
#include <string_view>

#include "containers/string_pair.h"
#include "files/file_content.h"
#include "frame/callbacks.h"
#include "operations/arguments.h"
#include "operations/operation.h"
#include "text/c_text.h"
#include "text/out_file.h"
#include "text/records.h"

namespace zenfo {
namespace {

// Loaded without hooks: an interrupted load would cut the list short.
bool load(const char* file, FileContent& content) {
  return !is_empty(file) && content.load_file_content(file) > 0;
}

bool open(const char* file, OutFile& out) {
  return !is_empty(file) && out.open(file, platform::OutputMode::kTruncate,
                                     OutFile::LineEnds::kExpand);
}

// The steps of both loaders: `append` turns a line into a record of the list,
// or returns false to end the load.
template <class Append>
int32_t load_lines(ItemList& list, const FileContent& content, Append append) {
  RecordReader lines(content.bytes(), "\r\n");
  while (const auto line = lines.next()) {
    if (!append(*line)) return -1;
    if (!list.goes_on()) return 0;
  }
  list.build_index();
  return static_cast<int32_t>(list.count());
}

// Intended: an empty line ends the load, the pairs before it stay.
bool append_pair(ItemList& list, std::string_view line) {
  RecordReader tokens(line, "\t");
  const auto find = tokens.next();
  if (!find) return false;
  list.append(std::make_unique<StringPair>(*find, tokens.next_or_empty()));
  return true;
}

}  // namespace

ZENFO_ENTRY GetFindString(uint32_t index, char* buffer, uint32_t) {
  return run<row::GetFindString>([&](Library& library) {
    return give_slot<StringPair>(library, ZENFO_LIST_PAIRS, index, buffer,
                                 TextSlot::kFirst);
  });
}

ZENFO_ENTRY GetReplaceString(uint32_t index, char* buffer, uint32_t) {
  return run<row::GetReplaceString>([&](Library& library) {
    return give_slot<StringPair>(library, ZENFO_LIST_PAIRS, index, buffer,
                                 TextSlot::kSecond);
  });
}

ZENFO_ENTRY get_replace_value(uint32_t index, char* buffer, uint32_t) {
  return run<row::get_replace_value>([&](Library& library) {
    return give_slot<ReplaceValue>(library, ZENFO_LIST_VALUES, index, buffer,
                                   TextSlot::kFirst);
  });
}

ZENFO_ENTRY AddStringPair(const char* find, const char* replace) {
  return run<row::AddStringPair>([&](Library& library) {
    ItemList* pairs = library.pairs.get();
    if (pairs == nullptr) return -1;
    pairs->append(
        std::make_unique<StringPair>(or_empty(find), or_empty(replace)));
    return static_cast<int32_t>(pairs->count());
  });
}

ZENFO_ENTRY UpdateStringPair(uint32_t index, const char* find,
                             const char* replace) {
  return run<row::UpdateStringPair>([&](Library& library) {
    ItemList* pairs = library.pairs.get();
    if (pairs == nullptr) return -1;
    auto* pair = record_cast<StringPair>(pairs->get(index));
    if (pair == nullptr) return -1;
    pair->set(or_empty(find), or_empty(replace));
    pairs->note_change();
    return 1;
  });
}

ZENFO_ENTRY LoadStringPair(const char* file) {
  return run<row::LoadStringPair>([&](Library& library) {
    ItemList* pairs = library.pairs.get();
    if (pairs == nullptr || is_empty(file)) return -1;
    pairs->clear();
    FileContent content;
    if (!load(file, content)) return -1;
    return load_lines(*pairs, content, [&](std::string_view line) {
      return append_pair(*pairs, line);
    });
  });
}

ZENFO_ENTRY SaveStringPair(const char* file, int32_t selected_only) {
  return run<row::SaveStringPair>([&](Library& library) {
    ItemList* pairs = library.pairs.get();
    OutFile out;
    if (pairs == nullptr || !open(file, out)) return -1;
    send_status("Now saving string pairs");
    pairs->report_position(0);
    int32_t written = 0;
    for (uint32_t i = 0; i < pairs->count(); ++i) {
      if (pairs->poll_interrupt() != 0) return 0;
      pairs->report_position(i);
      const auto* pair = record_cast<StringPair>(pairs->get(i));
      if (pair == nullptr || (selected_only != 0 && pair->state == 0)) continue;
      out.write(printed(pair->find.text()));
      out.write('\t');
      out.write(printed(pair->replace.text()));
      out.write('\n');
      ++written;
    }
    pairs->report_position(pairs->count());
    return out.close() ? written : -1;
  });
}

// Intended: the list is cleared before the name is checked, and empty lines are
// skipped, both unlike the pairs.
ZENFO_ENTRY load_replace_list(const char* file) {
  return run<row::load_replace_list>([&](Library& library) {
    ItemList* values = library.values.get();
    if (values == nullptr) return -1;
    values->clear();
    FileContent content;
    if (!load(file, content)) return -1;
    return load_lines(*values, content, [&](std::string_view line) {
      if (!line.empty()) values->append(std::make_unique<ReplaceValue>(line));
      return true;
    });
  });
}

// Intended: CR LF is written through the text mode that adds a CR of its own,
// and the last position is reported on the list of pairs.
ZENFO_ENTRY save_replace_list(const char* file) {
  return run<row::save_replace_list>([&](Library& library) {
    ItemList* values = library.values.get();
    OutFile out;
    if (values == nullptr || !open(file, out)) return -1;
    int32_t written = 0;
    for (uint32_t i = 0; i < values->count(); ++i) {
      if (values->poll_interrupt() != 0) return 0;
      const auto* value = record_cast<ReplaceValue>(values->get(i));
      if (value == nullptr) continue;
      out.write(printed(value->value.text()));
      out.write("\r\n");
      ++written;
    }
    if (library.pairs != nullptr) {
      library.pairs->report_position(library.pairs->count());
    }
    return out.close() ? written : -1;
  });
}

}  // namespace zenfo
