#include "stats/stats_ops.h"

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "files/file_content.h"
#include "frame/callbacks.h"
#include "pattern/compiler.h"
#include "pattern/match_record.h"
#include "pattern/matcher.h"
#include "text/byte_tables.h"
#include "text/c_text.h"
#include "text/out_file.h"

namespace zenfo {
namespace {

// A word is a run of these: neither control character, space nor DEL.
CharClass word_bytes() {
  CharClass bytes;
  bytes.add_include_range(33, 255);
  bytes.add_exclude_range(127, 127);
  return bytes;
}

// Counts the matches of a context's pattern; -1 when the host stops it.
int32_t count_matches(PatternContext& context, const FileContent& content) {
  FindOptions options;
  options.case_flag = true;  // neither pattern has letters
  options.store = false;
  return find_all(context, content.data(), content.length(), options);
}

int32_t count_file(FileContent& content, const char* file, TextCounts& counts) {
  const int32_t size = content.load_file_content(file);
  if (size < 0) return -1;
  if (size == 0) {
    counts = {};
    return 1;
  }
  refresh_byte_tables();
  PatternContext context;
  context.SetInterruptHook(interr);
  context.SetReportHook(report);
  compile_class(context, word_bytes());
  send_status(std::string("Now counting words in ") + file);
  const int32_t words = count_matches(context, content);
  if (words < 0) return -1;
  compile_literal(context, "\r\n");
  send_status(std::string("Now counting lines in ") + file);
  const int32_t lines = count_matches(context, content);
  if (lines < 0) return -1;
  // All together at the end: a count that is stopped stores nothing.
  counts = {static_cast<uint32_t>(size), static_cast<uint32_t>(words),
            static_cast<uint32_t>(lines)};
  return 1;
}

// The content that is kept from count to count, created at the first.
FileContent& counted_content(Library& library) {
  if (library.counted_content == nullptr) {
    library.counted_content = std::make_unique<FileContent>();
    library.counted_content->allow_views();
  }
  return *library.counted_content;
}

// More is given back: it would be lacking elsewhere in a small address space.
constexpr uint32_t kKeptContent = 1 << 20;

}  // namespace

int32_t get_word_count(Library& library, const char* file, TextCounts* counts) {
  if (!library.initialized() || file == nullptr || *file == '\0' ||
      counts == nullptr) {
    return -1;
  }
  // Loaded without hooks: an interrupted load would be counted short.
  FileContent& content = counted_content(library);
  const int32_t result = count_file(content, file, *counts);
  if (content.length() > kKeptContent) library.counted_content.reset();
  return result;
}

int32_t save_occurrences(Library& library, const char* file,
                         const char* separator) {
  if (!library.initialized() || file == nullptr || *file == '\0' ||
      separator == nullptr || *separator == '\0') {
    return -1;
  }
  send_status("Now saving selected occurrences to file");
  OutFile out;
  if (!out.open(file, platform::OutputMode::kTruncate,
                OutFile::LineEnds::kRaw)) {
    return -1;
  }
  PatternContext& context = *library.find_context;
  const uint32_t count = context.matches.Count();
  int32_t saved = 0;
  for (uint32_t i = 0; i < count; ++i) {
    if (context.PollCancel() != 0) return -1;
    context.ReportProgress(i, count);
    const auto* match = record_cast<MatchRecord>(context.matches.Get(i));
    if (match == nullptr) return -1;
    if (match->state == 0) continue;
    // Intended: a match that holds a NUL is written up to it.
    out.write(up_to_nul(match->matched()));
    out.write(separator);
    ++saved;
  }
  return out.close() ? saved : -1;
}

}  // namespace zenfo
