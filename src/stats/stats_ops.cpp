#include "stats/stats_ops.h"

#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "files/file_content.h"
#include "frame/callbacks.h"
#include "frame/guard.h"
#include "pattern/context.h"
#include "pattern/match_record.h"
#include "stats/word_count.h"
#include "text/c_text.h"
#include "text/out_file.h"

namespace zenfo {
namespace {

int32_t count_file(FileContent& content, PatternContext& context,
                   const char* file, TextCounts& counts) {
  const int32_t size = content.load_file_content(file);
  if (size < 0) return -1;
  if (size == 0) {
    counts = {};
    return 1;
  }
  WordCount count(context, content.bytes());
  send_status("Now counting words in", file);
  const int32_t words = unlogged(-1, [&] { return count.words(); });
  if (words < 0) return -1;
  send_status("Now counting lines in", file);
  const int32_t lines = count.lines();
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

// Likewise. It never holds a pattern, only the hooks of the counts.
PatternContext& counting_context(Library& library) {
  if (library.counting_context == nullptr) {
    library.counting_context = std::make_unique<PatternContext>();
    library.counting_context->SetInterruptHook(interr);
    library.counting_context->SetReportHook(report);
  }
  return *library.counting_context;
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
  const int32_t result =
      count_file(content, counting_context(library), file, *counts);
  if (content.length() >= kKeptContent) library.counted_content.reset();
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
