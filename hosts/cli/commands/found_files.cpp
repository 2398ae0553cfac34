#include "cli/commands/found_files.h"

#include <algorithm>

#include "cli/terminal/messages.h"
#include "shared/system/system.h"

namespace zenfo::host::cli {

bool leaves_nothing_half_done(const FindOptions& options) {
  return options.search.report.empty() && options.summary.empty();
}

FoundFiles::FoundFiles(const FindOptions& options, const FileList& files,
                       bool several_texts, Output& output)
    : options_(options),
      files_(files),
      several_texts_(several_texts),
      output_(output),
      lines_(options.form, output),
      json_(options.form.before, options.form.after,
            [&output](std::string_view lines) { output.put_json(lines); }),
      hex_(options.form.paths, options.form.colours, output),
      counts_(options.show == Show::kLineCounts ||
                      options.show == Show::kMatchCounts
                  ? files.count()
                  : 0) {}

bool FoundFiles::read_text() const {
  return options_.show == Show::kLines || options_.show == Show::kLineCounts ||
         options_.show == Show::kJson || options_.show == Show::kHex;
}

std::string_view FoundFiles::text(const FoundFile& file) {
  if (loaded_ != &file && !load(file.path)) {
    const std::string reason = system::why_not_loaded(file.path);
    complain(files_.shown(file.path),
             "cannot be read again" + (reason.empty() ? "" : ": " + reason));
  }
  loaded_ = &file;
  return bytes_.view();
}

bool FoundFiles::load(const std::string& path) {
  return leaves_nothing_half_done(options_) ? bytes_.load_or_map(path)
                                            : bytes_.load(path);
}

void FoundFiles::write(FoundFile& file) {
  if (output_.failed()) return;
  if (several_texts_) unite(file.matches);
  if (read_text()) {
    write_text(file);
  } else if (!counts_.empty()) {
    counts_[file.index] = file.matches.size();
  }
  loaded_ = nullptr;
}

void FoundFiles::write_text(const FoundFile& file) {
  const std::string_view bytes = text(file);
  const std::string_view path = files_.shown(file.path);
  const uint64_t most_lines = options_.form.most_lines;
  switch (options_.show) {
    case Show::kLineCounts:
      counts_[file.index] =
          std::min(count_matching_lines(bytes, file.matches), most_lines);
      return;
    case Show::kJson:
      json_.put_file(path, bytes, find_blocks(bytes, file.matches, most_lines));
      break;
    case Show::kHex:
      hex_.print_file(path, bytes, file.matches);
      break;
    default:
      lines_.print_file(path, bytes, file.matches);
      break;
  }
  if (output_.on_terminal()) output_.flush();
}

}  // namespace zenfo::host::cli
