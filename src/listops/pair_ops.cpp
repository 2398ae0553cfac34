#include "listops/pair_ops.h"

#include <memory>
#include <string_view>

#include "files/file_content.h"
#include "frame/callbacks.h"
#include "listops/string_pair.h"
#include "text/c_text.h"
#include "text/out_file.h"
#include "text/records.h"

namespace zenfo {
namespace {

std::string_view or_empty(const char* text) {
  return text != nullptr ? text : "";
}

// Loaded without hooks: an interrupted load would cut the list short.
bool load(const char* file, FileContent& content) {
  return !or_empty(file).empty() && content.load_file_content(file) > 0;
}

bool open(const char* file, OutFile& out) {
  return !or_empty(file).empty() &&
         out.open(file, platform::OutputMode::kTruncate,
                  OutFile::LineEnds::kExpand);
}

// The steps of both loaders: `append` turns a line into a record of the list,
// or answers false to give up.
template <class Append>
int32_t load_lines(ItemList& list, const FileContent& content, Append append) {
  RecordReader lines(content.bytes(), "\r\n");
  while (const auto line = lines.next()) {
    if (!append(*line)) return -1;
    if (list.PollInterrupt() != 0) return 0;
    list.ReportReset();
  }
  list.BuildIndex();
  return static_cast<int32_t>(list.Count());
}

// Intended: an empty line ends the load, the pairs before it stay.
bool append_pair(ItemList& list, std::string_view line) {
  RecordReader tokens(line, "\t");
  const auto find = tokens.next();
  if (!find) return false;
  list.Append(std::make_unique<StringPair>(*find, tokens.next_or_empty()));
  return true;
}

}  // namespace

int32_t add_string_pair(Library& library, const char* find,
                        const char* replace) {
  ItemList* pairs = library.pairs.get();
  if (pairs == nullptr) return -1;
  pairs->Append(
      std::make_unique<StringPair>(or_empty(find), or_empty(replace)));
  return static_cast<int32_t>(pairs->Count());
}

int32_t update_string_pair(Library& library, uint32_t index, const char* find,
                           const char* replace) {
  ItemList* pairs = library.pairs.get();
  if (pairs == nullptr) return -1;
  auto* pair = record_cast<StringPair>(pairs->Get(index));
  if (pair == nullptr) return -1;
  pair->set(or_empty(find), or_empty(replace));
  return 1;
}

int32_t load_string_pair(Library& library, const char* file) {
  ItemList* pairs = library.pairs.get();
  if (pairs == nullptr || or_empty(file).empty()) return -1;
  pairs->Clear();
  FileContent content;
  if (!load(file, content)) return -1;
  return load_lines(*pairs, content, [&](std::string_view line) {
    return append_pair(*pairs, line);
  });
}

int32_t save_string_pair(Library& library, const char* file,
                         int32_t selected_only) {
  ItemList* pairs = library.pairs.get();
  OutFile out;
  if (pairs == nullptr || !open(file, out)) return -1;
  send_status("Now saving string pairs");
  pairs->ReportPosition(0);
  int32_t written = 0;
  for (uint32_t i = 0; i < pairs->Count(); ++i) {
    if (pairs->PollInterrupt() != 0) return 0;
    pairs->ReportPosition(i);
    const auto* pair = record_cast<StringPair>(pairs->Get(i));
    if (pair == nullptr || (selected_only != 0 && pair->state == 0)) continue;
    out.write(printed(pair->find.text()));
    out.write('\t');
    out.write(printed(pair->replace.text()));
    out.write('\n');
    ++written;
  }
  pairs->ReportPosition(pairs->Count());
  return out.close() ? written : -1;
}

// Intended: cleared before the name is looked at, and empty lines are skipped,
// both unlike the pairs.
int32_t load_replace_list(Library& library, const char* file) {
  ItemList* values = library.values.get();
  if (values == nullptr) return -1;
  values->Clear();
  FileContent content;
  if (!load(file, content)) return -1;
  return load_lines(*values, content, [&](std::string_view line) {
    if (!line.empty()) values->Append(std::make_unique<ReplaceValue>(line));
    return true;
  });
}

// Intended: CR LF is written through the text mode that adds a CR of its own,
// and the last position is told on the list of pairs.
int32_t save_replace_list(Library& library, const char* file) {
  ItemList* values = library.values.get();
  OutFile out;
  if (values == nullptr || !open(file, out)) return -1;
  int32_t written = 0;
  for (uint32_t i = 0; i < values->Count(); ++i) {
    if (values->PollInterrupt() != 0) return 0;
    const auto* value = record_cast<ReplaceValue>(values->Get(i));
    if (value == nullptr) continue;
    out.write(printed(value->value.text()));
    out.write("\r\n");
    ++written;
  }
  if (library.pairs != nullptr) {
    library.pairs->ReportPosition(library.pairs->Count());
  }
  return out.close() ? written : -1;
}

}  // namespace zenfo
