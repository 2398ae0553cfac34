#include "gui/results/export.h"

#include <algorithm>
#include <vector>

#include "gui/results/export_lines.h"
#include "shared/text/json_text.h"
#include "shared/text/match_json.h"

namespace zenfo::host::gui {
namespace {

constexpr std::string_view kColumns[] = {"path",   "line",  "column", "offset",
                                         "length", "match", "text"};

std::string fields_line(std::span<const std::string> fields, ExportForm form) {
  std::string line;
  for (const std::string& field : fields) {
    if (&field != fields.data()) line += form == ExportForm::kCsv ? ',' : '\t';
    line += form == ExportForm::kCsv ? csv_field(field) : tsv_field(field);
  }
  return line + (form == ExportForm::kCsv ? "\r\n" : "\n");
}

std::string header(ExportForm form) {
  if (form != ExportForm::kCsv && form != ExportForm::kTsv) return "";
  const std::vector<std::string> names(std::begin(kColumns),
                                       std::end(kColumns));
  return fields_line(names, form);
}

std::string one_match(const ExportedMatch& match, ExportForm form) {
  if (form == ExportForm::kText) {
    return utf8_of(match.path) + ':' + std::to_string(match.line_number) +
           ": " + utf8_of(match.line) + '\n';
  }
  const std::string fields[] = {
      utf8_of(match.path),          std::to_string(match.line_number),
      std::to_string(match.column), std::to_string(match.offset),
      std::to_string(match.length), utf8_of(match.text),
      utf8_of(match.line)};
  return fields_line(fields, form);
}

class Export {
 public:
  Export(const ExportSource& source, const ExportSink& sink)
      : source_(source),
        form_(source.form()),
        sink_(sink),
        json_(0, 0, [this](auto lines) { put(lines); }) {}

  ExportResult run(std::atomic<uint64_t>* files_done) {
    put(header(form_));
    for (const ExportSource::File& file : source_.files()) {
      if (result_.stopped) break;
      write(file);
      if (files_done != nullptr) ++*files_done;
    }
    if (form_ == ExportForm::kJsonLines && !result_.stopped) {
      json_.put_summary(result_.files);
    }
    return std::move(result_);
  }

 private:
  void put(std::string_view lines) {
    if (!lines.empty() && !result_.stopped) result_.stopped = !sink_(lines);
  }

  void write(const ExportSource::File& file) {
    const std::string& path = *file.path;
    if (form_ == ExportForm::kPaths) {
      put(utf8_of(path) + '\n');
      ++result_.files;
      return;
    }
    const std::vector<Match> matches = source_.matches_of(file);
    if (!bytes_.load(path) ||
        (!matches.empty() && !holds(bytes_.view(), matches.back()))) {
      result_.unread.push_back(path);
      return;
    }
    ++result_.files;
    result_.matches += matches.size();
    if (form_ == ExportForm::kJsonLines) {
      json_.put_file(path, bytes_.view(),
                     find_blocks(bytes_.view(), matches, UINT64_MAX));
      return;
    }
    for_each_match(path, bytes_.view(), matches,
                   [&](const ExportedMatch& match) {
                     if (!result_.stopped) put(one_match(match, form_));
                   });
  }

  const ExportSource& source_;
  const ExportForm form_;
  const ExportSink& sink_;
  MatchJson json_;
  FileBytes bytes_;
  ExportResult result_;
};

// Files without matches have nothing but their paths.
bool is_exported(const ResultFile& file, ExportForm form) {
  if (file.removed) return false;
  const bool path_only =
      form == ExportForm::kPaths && file.state != ResultState::kFound;
  return path_only || file.all_chosen() > 0;
}

}  // namespace

ExportSource::ExportSource(const ResultSet& set,
                           std::span<const uint32_t> files, ExportForm form)
    : form_(form), matches_(set.matches()) {
  for (const uint32_t file : files) {
    const ResultFile& facts = set.file(file);
    if (!is_exported(facts, form)) continue;
    files_.push_back({&facts.path, facts.first, facts.listed});
  }
}

std::vector<Match> ExportSource::matches_of(const File& file) const {
  std::vector<Match> matches;
  for (uint32_t at = file.first; at < file.first + file.listed; ++at) {
    if (matches_.is_chosen(at)) matches.push_back(matches_.at(at));
  }
  return matches;
}

ExportResult export_results(const ExportSource& source, const ExportSink& sink,
                            std::atomic<uint64_t>* files_done) {
  return Export(source, sink).run(files_done);
}

std::string csv_field(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos &&
      !text.starts_with(' ') && !text.ends_with(' ')) {
    return std::string(text);
  }
  std::string field = "\"";
  for (const char c : text) {
    if (c == '"') field += c;
    field += c;
  }
  return field + '"';
}

std::string tsv_field(std::string_view text) {
  std::string field(text);
  std::replace_if(
      field.begin(), field.end(),
      [](char c) { return c == '\t' || c == '\n' || c == '\r'; }, ' ');
  return field;
}

}  // namespace zenfo::host::gui
