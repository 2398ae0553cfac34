#include "gui/win32/list/row_copy.h"

#include <algorithm>
#include <utility>

#include "gui/results/export_lines.h"
#include "gui/win32/base/wide.h"

namespace zenfo::host::gui::win32 {
namespace {

// The line as the list shows it.
FoundLine found_line(const ExportedMatch& match) {
  const size_t start = match.column - 1;
  const size_t cut = start > kBytesBeforeMatch ? start - kBytesBeforeMatch : 0;
  FoundLine found;
  found.read = true;
  found.number = match.line_number;
  found.line.bytes = match.line.substr(cut, kMostLineBytes);
  found.line.start = static_cast<uint32_t>(start - cut);
  found.line.length = static_cast<uint32_t>(std::min<size_t>(
      match.length, found.line.bytes.size() - found.line.start));
  found.line.cut_left = cut > 0;
  return found;
}

}  // namespace

RowCopy::RowCopy(const ResultTab& tab, CopyForm form)
    : set_(tab.shared_set()), form_(form), columns_(columns_of(tab.shown)) {
  take_rows(tab);
}

void RowCopy::take_rows(const ResultTab& tab) {
  const ListState& list = tab.list();
  if (with_matches()) matches_.reserve(list.selection.count());
  for (const uint32_t file : list.rows.files()) {
    const bool row = list.selection.has({file, ResultRow::kNoMatch});
    const size_t before = matches_.size();
    bool any = row;
    if (list.rows.is_open(file)) {
      list.selection.for_each_match(file, [&](uint32_t match) {
        any = true;
        if (!with_matches()) return;
        matches_.push_back(set_->match(file, match));
      });
    }
    if (!any) continue;
    if (form_ == CopyForm::kLines && matches_.size() == before) {
      // A file without selected matches stands for all of them.
      for (uint32_t i = 0; i < set_->file(file).listed; ++i) {
        matches_.push_back(set_->match(file, i));
      }
    }
    files_.push_back({&set_->file(file), &set_->reason(file), row,
                      matches_.size() - before});
  }
}

void RowCopy::run(SideThread::Control& control) {
  control.all = files_.size();
  const Match* matches = matches_.data();
  for (const File& file : files_) {
    if (control.stop || too_long()) return;
    add_file(file, matches);
    matches += file.matches;
    ++control.done;
  }
}

void RowCopy::add_file(const File& file, const Match* matches) {
  if (form_ == CopyForm::kLines) {
    if (file.matches > 0) add_lines(file.facts->path, {matches, file.matches});
    return;
  }
  if (form_ != CopyForm::kRows) {
    const bool names = form_ == CopyForm::kNames;
    return add(names ? wide(file.facts->name()) : wide(file.facts->path));
  }
  if (file.row) {
    std::wstring row;
    for (const Column& column : columns_) {
      if (!row.empty()) row += L'\t';
      row += cell_text(*file.facts, *file.reason, column.id);
    }
    add(row);
  }
  if (file.matches > 0) add_matches(file.facts->path, {matches, file.matches});
}

void RowCopy::add_matches(const std::string& path,
                          std::span<const Match> matches) {
  if (!bytes_.load(path) || !holds(bytes_.view(), matches.back())) {
    const FoundLine unread;
    for (size_t i = 0; i < matches.size(); ++i) add(match_text(&unread));
    return;
  }
  for_each_match(path, bytes_.view(), matches, [&](const ExportedMatch& match) {
    if (too_long()) return;
    const FoundLine line = found_line(match);
    add(match_text(&line));
  });
}

void RowCopy::add_lines(const std::string& path,
                        std::span<const Match> matches) {
  if (!bytes_.load(path) || !holds(bytes_.view(), matches.back())) {
    const FoundLine unread;
    return add(match_text(&unread));
  }
  uint64_t last = 0;
  for_each_match(path, bytes_.view(), matches, [&](const ExportedMatch& match) {
    if (match.line_number == last || too_long()) return;
    last = match.line_number;
    add(wide(utf8_of(match.line)));
  });
}

void RowCopy::add(const std::wstring& row) {
  if (!text_.empty()) text_ += L"\r\n";
  text_ += row;
}

}  // namespace zenfo::host::gui::win32
