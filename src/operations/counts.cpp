// The operations under "Counts" in zenfofr130.h.
//
// Tested by tests/contract/stats_test.cpp
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "files/file_content.h"
#include "frame/callbacks.h"
#include "operations/operation.h"
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
  // Stored together at the end, so that a stopped count stores nothing.
  counts = {static_cast<uint32_t>(size), static_cast<uint32_t>(words),
            static_cast<uint32_t>(lines)};
  return 1;
}

// The content that is kept from count to count; the first count creates it.
FileContent& counted_content(Library& library) {
  if (library.counted_content == nullptr) {
    library.counted_content = std::make_unique<FileContent>();
    library.counted_content->allow_views();
  }
  return *library.counted_content;
}

// Likewise. It never contains a pattern, only the hooks of the counts.
PatternContext& counting_context(Library& library) {
  if (library.counting_context == nullptr) {
    library.counting_context = std::make_unique<PatternContext>();
    library.counting_context->set_interrupt_hook(interr);
    library.counting_context->set_report_hook(report);
  }
  return *library.counting_context;
}

// A larger buffer is freed: in a small address space other parts would lack the
// memory.
constexpr uint32_t kKeptContent = 16 << 20;

}  // namespace

ZENFO_ENTRY get_word_count(const char* file, TextCounts* counts) {
  return run<row::get_word_count>([&](Library& library) {
    if (!library.initialized() || is_empty(file) || counts == nullptr) {
      return -1;
    }
    // Loaded without hooks: an interrupted load would be counted short.
    FileContent& content = counted_content(library);
    const int32_t result =
        count_file(content, counting_context(library), file, *counts);
    if (content.length() >= kKeptContent) library.counted_content.reset();
    return result;
  });
}

ZENFO_ENTRY save_occurrences(const char* file, const char* separator) {
  return run<row::save_occurrences>([&](Library& library) {
    if (!library.initialized() || is_empty(file) || is_empty(separator)) {
      return -1;
    }
    send_status("Now saving selected occurrences to file");
    OutFile out;
    if (!out.open(file, platform::OutputMode::kTruncate,
                  OutFile::LineEnds::kRaw)) {
      return -1;
    }
    PatternContext& context = *library.find_context;
    const uint32_t count = context.matches.count();
    int32_t saved = 0;
    for (uint32_t i = 0; i < count; ++i) {
      if (context.poll_cancel() != 0) return -1;
      context.report_progress(i, count);
      const auto* match = record_cast<MatchRecord>(context.matches.get(i));
      if (match == nullptr) return -1;
      if (match->state == 0) continue;
      // Intended: a match that holds a NUL is written up to it.
      out.write(up_to_nul(match->matched()));
      out.write(separator);
      ++saved;
    }
    return out.close() ? saved : -1;
  });
}

}  // namespace zenfo
