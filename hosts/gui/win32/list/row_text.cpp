#include "gui/win32/list/row_text.h"

#include <algorithm>

#include "gui/text/shown_text.h"
#include "gui/win32/base/ansi_page.h"
#include "gui/win32/base/system.h"
#include "gui/win32/base/wide.h"
#include "gui/words/strings.h"
#include "shared/system/file_state.h"

namespace zenfo::host::gui::win32 {
namespace {

const std::vector<Column> kFoundColumns = {
    {ResultColumn::kName, Text::kColumnName, 260},
    {ResultColumn::kMatches, Text::kColumnMatches, 82, true},
    {ResultColumn::kFolder, Text::kColumnFolder, 220},
    {ResultColumn::kSize, Text::kColumnSize, 76, true},
    {ResultColumn::kType, Text::kColumnType, 60},
    {ResultColumn::kModified, Text::kColumnModified, 130}};
const std::vector<Column> kNoMatchColumns = {
    {ResultColumn::kName, Text::kColumnName, 260},
    {ResultColumn::kFolder, Text::kColumnFolder, 320},
    {ResultColumn::kType, Text::kColumnType, 60}};
const std::vector<Column> kNotSearchedColumns = {
    {ResultColumn::kName, Text::kColumnName, 220},
    {ResultColumn::kFolder, Text::kColumnFolder, 260},
    {ResultColumn::kReason, Text::kColumnReason, 260}};

std::wstring date_text(int64_t modified) {
  if (modified == 0) return L"";
  ULARGE_INTEGER units;
  units.QuadPart = static_cast<ULONGLONG>(modified);
  const FILETIME time{units.LowPart, units.HighPart};
  SYSTEMTIME universal{};
  SYSTEMTIME local{};
  FileTimeToSystemTime(&time, &universal);
  SystemTimeToTzSpecificLocalTime(nullptr, &universal, &local);
  wchar_t date[80] = L"";
  wchar_t hour[80] = L"";
  GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, &local, nullptr, date,
                 80);
  GetTimeFormatW(LOCALE_USER_DEFAULT, TIME_NOSECONDS, &local, nullptr, hour,
                 80);
  return std::wstring(date) + L' ' + hour;
}

std::wstring count_text(const ResultFile& file) {
  if (file.listed == file.count) return wide(grouped(file.count));
  return wide(
      format(Text::kMoreMatches, {grouped(file.count), grouped(file.listed)}));
}

// Blanks that stand before the match.
size_t blanks_before(const ShownText& shown, uint32_t start) {
  size_t blanks = 0;
  while (blanks < start &&
         (shown.text[blanks] == u' ' || shown.text[blanks] == u'\t')) {
    ++blanks;
  }
  return blanks;
}

}  // namespace

const std::vector<Column>& columns_of(ResultState state) {
  if (state == ResultState::kFound) return kFoundColumns;
  return state == ResultState::kNoMatch ? kNoMatchColumns : kNotSearchedColumns;
}

std::wstring cell_text(const ResultFile& file, const std::string& reason,
                       ResultColumn column) {
  switch (column) {
    case ResultColumn::kName:
      return wide(file.name());
    case ResultColumn::kMatches:
      return count_text(file);
    case ResultColumn::kFolder:
      return wide(file.folder());
    case ResultColumn::kSize:
      return wide(size_text(file.size));
    case ResultColumn::kType:
      return wide(file.extension());
    case ResultColumn::kModified:
      return date_text(file.modified);
    case ResultColumn::kReason:
      return wide(reason);
    case ResultColumn::kFound:
      break;
  }
  return L"";
}

LineText line_text(const FoundLine* line) {
  if (line == nullptr) return {L"", wide(Text::kLineWaiting), 0, 0};
  if (!line->read) return {L"", wide(Text::kLineNotRead), 0, 0};
  LineText text;
  if (line->number > 0) text.number = std::to_wstring(line->number);
  ShownText shown =
      shown_text(line->line.bytes, {{line->line.start, line->line.length, 0}},
                 ansi_page());
  const Mark mark = shown.marks.empty() ? Mark{} : shown.marks.front();
  const size_t blanks =
      line->line.cut_left ? 0 : blanks_before(shown, mark.start);
  std::replace(shown.text.begin(), shown.text.end(), u'\t', u' ');
  text.text.assign(shown.text.begin() + static_cast<ptrdiff_t>(blanks),
                   shown.text.end());
  text.start = mark.start - static_cast<uint32_t>(blanks);
  text.length = mark.length;
  return text;
}

std::wstring match_text(const FoundLine* line) {
  const LineText text = line_text(line);
  return text.number.empty() ? text.text : text.number + L": " + text.text;
}

}  // namespace zenfo::host::gui::win32
