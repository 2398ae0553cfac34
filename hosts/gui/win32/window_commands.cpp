// The commands of the main window.
#include <algorithm>
#include <optional>
#include <vector>

#include "gui/win32/base/wide.h"
#include "gui/win32/main_window.h"
#include "gui/win32/panels/settings_dialog.h"
#include "gui/win32/system/editor.h"

namespace zenfo::host::gui::win32 {
namespace {

// Whether a text of a message box ends before the first place of a tab.
bool before_tab_stop(const std::string& text, HFONT font) {
  const HDC device = GetDC(nullptr);
  const HGDIOBJ old = SelectObject(device, font);
  TEXTMETRICW metrics{};
  GetTextMetricsW(device, &metrics);
  const std::wstring shown = wide(text);
  SIZE size{};
  GetTextExtentPoint32W(device, shown.c_str(), static_cast<int>(shown.size()),
                        &size);
  SelectObject(device, old);
  ReleaseDC(nullptr, device);
  return size.cx < 8 * metrics.tmAveCharWidth;
}

}  // namespace

void MainWindow::run(CommandId id) {
  switch (id) {
    case CommandId::kSearch:
      return start_search();
    case CommandId::kStop:
      return stop_search();
    case CommandId::kSearchInFiles:
      return search_in_files();
    case CommandId::kMatchCase:
    case CommandId::kWholeWords:
    case CommandId::kPattern:
    case CommandId::kCaret:
      return panel_->click(id);
    case CommandId::kMore:
      panel_->show_more(!panel_->more_shown());
      return lay_out();
    case CommandId::kGoToFind:
      return panel_->focus_on(QueryField::kText);
    case CommandId::kGoToFolders:
      return panel_->focus_on(QueryField::kFolders);
    case CommandId::kGoToFilter:
      return view_->focus_on_filter();
    case CommandId::kChooseFolder:
      return panel_->choose_folder();
    case CommandId::kShowHistory:
      return panel_->show_list();
    case CommandId::kClearHistory:
      settings_.history.clear();
      panel_->show_history(settings_.history);
      return info_->show(std::string(text(Text::kHistoryCleared)));
    case CommandId::kSettings:
      return change_settings();
    case CommandId::kNewTab:
      add_tab();
      return panel_->focus_on(QueryField::kText);
    case CommandId::kCloseTab:
      return close_tab(static_cast<int>(current_));
    case CommandId::kNextTab:
      strip_->choose(static_cast<int>((current_ + 1) % tabs_.size()));
      return show_tab(strip_->current());
    case CommandId::kPreviousTab:
      strip_->choose(
          static_cast<int>((current_ + tabs_.size() - 1) % tabs_.size()));
      return show_tab(strip_->current());
    case CommandId::kNextMatch:
      return step_match(true);
    case CommandId::kPreviousMatch:
      return step_match(false);
    case CommandId::kNextFile:
      return step_file(true);
    case CommandId::kPreviousFile:
      return step_file(false);
    case CommandId::kToggleChosen:
      return list_->toggle_chosen();
    case CommandId::kChooseAll:
      tab().set().choose_all(true);
      return choice_changed();
    case CommandId::kChooseNone:
      tab().set().choose_all(false);
      return choice_changed();
    case CommandId::kInvertChoice:
      tab().set().invert_choice();
      return choice_changed();
    case CommandId::kSelectAll:
      return list_->select_all();
    case CommandId::kOpenFile:
      return list_->open_row(true);
    case CommandId::kCloseFile:
      return list_->open_row(false);
    case CommandId::kOpenAllFiles:
      return open_all(true);
    case CommandId::kCloseAllFiles:
      return open_all(false);
    case CommandId::kOpenInEditor:
      return open_in_editor();
    case CommandId::kShowFolder:
      return show_folder();
    case CommandId::kRemoveFromResults:
      return remove_selected();
    case CommandId::kCopyPaths:
      return copy_selected(CopyForm::kPaths);
    case CommandId::kCopyNames:
      return copy_selected(CopyForm::kNames);
    case CommandId::kCopyRows:
      return copy_selected(CopyForm::kRows);
    case CommandId::kCopyLines:
      return copy_selected(CopyForm::kLines);
    case CommandId::kExport:
      return export_rows();
    case CommandId::kPreviewBelow:
      settings_.preview_below = !settings_.preview_below;
      settings_.preview_shown = true;
      lay_out();
      return show_page();
    case CommandId::kShowPreview:
      settings_.preview_shown = !settings_.preview_shown;
      view_->show_pages(settings_.preview_shown);
      lay_out();
      clear_page();
      return show_page();
    case CommandId::kShowText:
      return choose_page(PageKind::kText);
    case CommandId::kShowBytes:
      return choose_page(PageKind::kBytes);
    case CommandId::kWrapLines:
      settings_.wrap = !settings_.wrap;
      return page_->set_wrap(settings_.wrap);
    case CommandId::kShowWhiteSpace:
      return page_->set_white_space(!page_->shows_white_space());
    case CommandId::kCopyText:
      if (!page_->copy()) info_->show(std::string(text(Text::kCopyTooLong)));
      return;
    case CommandId::kSelectAllText:
      return page_->select_all();
    case CommandId::kCopyPlace:
      return copy_place();
    case CommandId::kOpenAtText:
      return open_at_text();
    case CommandId::kFindText:
      return find_text();
    case CommandId::kInsertLineBreak:
      return panel_->insert_line_break();
    case CommandId::kZoomIn:
      return zoom(page_->zoom() + 10);
    case CommandId::kZoomOut:
      return zoom(page_->zoom() - 10);
    case CommandId::kZoomNormal:
      return zoom(100);
    case CommandId::kNextPane:
      return step_pane(true);
    case CommandId::kPreviousPane:
      return step_pane(false);
    case CommandId::kShowKeys:
      return show_keys();
    case CommandId::kExit:
      SendMessageW(window(), WM_CLOSE, 0, 0);
      return;
    default:
      return;
  }
}

CommandState MainWindow::state() const {
  CommandState state;
  state.running = tab().running();
  // A search with faults says what is wrong, so the command is always enabled.
  state.can_search = true;
  state.any_result = tab().set().count() > tab().set().removed();
  state.any_match = tab().set().totals().matches > 0;
  state.any_selected = tab().list().selection.count() > 0;
  state.row_in_focus = list_->any_row();
  state.any_chosen = tab().set().totals().chosen > 0;
  state.writing = writer_->busy();
  state.any_text = page_kind_ == PageKind::kText && page_->is_open();
  state.text_selected = state.any_text && page_->has_selection();
  state.several_tabs = tabs_.size() > 1;
  return state;
}

bool MainWindow::is_on(CommandId id, const void* owner) {
  const auto* self = static_cast<const MainWindow*>(owner);
  const Query query = self->panel_->query();
  switch (id) {
    case CommandId::kMatchCase:
      return query.match_case;
    case CommandId::kWholeWords:
      return query.whole_words;
    case CommandId::kPattern:
      return query.is_pattern;
    case CommandId::kCaret:
      return query.caret;
    case CommandId::kMore:
      return self->panel_->more_shown();
    case CommandId::kPreviewBelow:
      return self->settings_.preview_below;
    case CommandId::kShowPreview:
      return self->settings_.preview_shown;
    case CommandId::kWrapLines:
      return self->settings_.wrap;
    case CommandId::kShowWhiteSpace:
      return self->page_->shows_white_space();
    case CommandId::kShowText:
      return self->page_kind_ == PageKind::kText;
    case CommandId::kShowBytes:
      return self->page_kind_ == PageKind::kBytes;
    default:
      return false;
  }
}

// From the row in focus; the last match is followed by the first.
void MainWindow::step_match(bool forward) {
  ListState& list = tab().list(ResultState::kFound);
  if (tab().shown != ResultState::kFound || list.rows.count() == 0) return;
  const ResultRow first = list.rows.at(0);
  const ResultRow from = list.any_focus ? list.focus : first;
  auto next =
      forward ? list.rows.next_match(from) : list.rows.previous_match(from);
  if (!next) {
    const ResultRow last = list.rows.at(list.rows.count() - 1);
    next = forward ? list.rows.next_match({first.file, ResultRow::kNoMatch})
                   : std::optional<ResultRow>(
                         {last.file, tab().set().file(last.file).listed - 1});
  }
  if (next) list_->go_to(*next);
}

void MainWindow::step_file(bool forward) {
  ListState& list = tab().list();
  if (!list_->any_row()) return;
  const ResultRow file{list.focus.file, ResultRow::kNoMatch};
  const auto row = list.rows.row_of(file);
  if (!row) return;
  if (!forward) {
    if (*row == 0) return;
    const ResultRow before = list.rows.at(*row - 1);
    return list_->go_to({before.file, ResultRow::kNoMatch});
  }
  const uint64_t matches =
      list.rows.is_open(file.file) ? tab().set().file(file.file).listed : 0;
  const uint64_t next = *row + 1 + matches;
  if (next < list.rows.count()) list_->go_to(list.rows.at(next));
}

void MainWindow::open_all(bool on) {
  opens_files_ = on;
  ListState& list = tab().list(ResultState::kFound);
  if (!on && list.any_focus) list.focus.match = ResultRow::kNoMatch;
  list.rows.open_all(on);
  list_->refresh();
}

// The line of the match, or of the file's first one.
void MainWindow::open_in_editor() {
  if (!list_->any_row()) return;
  ResultRow row = list_->row();
  const std::string& path = tab().set().file(row.file).path;
  if (row.is_file() && tab().set().file(row.file).listed > 0) row.match = 0;
  const FoundLine* line = row.is_file() ? nullptr : lines_->find(tab(), row);
  const std::string reason = win32::open_in_editor(
      window(), settings_, path, line == nullptr ? 1 : line->number);
  if (!reason.empty()) info_->show(format(Text::kNotOpened, {path, reason}));
}

void MainWindow::show_folder() {
  if (list_->any_row()) {
    show_in_folder(tab().set().file(list_->row().file).path);
  }
}

// Files of the selected rows, each once, in the order of the rows.
std::vector<uint32_t> MainWindow::selected_files() const {
  std::vector<uint32_t> files;
  const ListState& list = tab().list();
  list.selection.for_each(list.rows, [&](ResultRow row) {
    if (files.empty() || files.back() != row.file) files.push_back(row.file);
  });
  return files;
}

// Out of the results, never off the disk.
void MainWindow::remove_selected() {
  const std::vector<uint32_t> files = selected_files();
  if (files.empty()) return;
  ListState& list = tab().list();
  const auto row =
      list.rows.row_of({files.front(), ResultRow::kNoMatch}).value_or(0);
  for (const uint32_t file : files) tab().set().remove(file);
  tab().update();
  list.selection.clear();
  list.any_focus = list.rows.count() > 0;
  if (list.any_focus) {
    list.focus = list.rows.at(std::min(row, list.rows.count() - 1));
  }
  list_->refresh();
  if (list.any_focus) list_->go_to(list.focus);
  show_state();
}

void MainWindow::zoom(int percent) {
  page_->set_zoom(percent);
  settings_.zoom_percent = page_->zoom();
}

void MainWindow::step_pane(bool forward) {
  std::vector<HWND> panes = {panel_->window(), view_->window(),
                             list_->window()};
  // A single tab is no place to go to.
  if (tabs_.size() > 1) panes.insert(panes.begin() + 1, strip_->window());
  if (settings_.preview_shown) panes.push_back(page_window());
  const size_t count = panes.size();
  size_t now = 0;
  for (size_t i = 0; i < count; ++i) {
    if (GetFocus() == panes[i] || IsChild(panes[i], GetFocus())) now = i;
  }
  const HWND next = panes[(now + (forward ? 1 : count - 1)) % count];
  if (next == panel_->window()) return panel_->focus_on(QueryField::kText);
  if (next == view_->window()) return view_->focus_on_filter();
  SetFocus(next);
}

void MainWindow::show_keys() {
  std::wstring text;
  for (const Command& command : commands()) {
    const std::string key = key_name(keys_.key(command.id));
    if (key.empty()) continue;
    text += wide(key) +
            (before_tab_stop(key, look_.font.get()) ? L"\t\t" : L"\t") +
            wide(plain_text(command.label)) + L"\n";
  }
  MessageBoxW(window(), text.c_str(),
              wide(plain_text(Text::kCommandShowKeys)).c_str(), MB_OK);
}

void MainWindow::choice_changed() {
  InvalidateRect(list_->window(), nullptr, FALSE);
  show_state();
}

void MainWindow::change_settings() {
  SettingsDialog dialog(window(), look_, settings_);
  if (!dialog.run()) return;
  dialog.put_into(settings_);
  page_->set_font(settings_.font, settings_.font_size);
  page_->set_wrap(settings_.wrap);
  restyle(look_.dpi);
}

// New tabs begin with the order that was chosen last.
void MainWindow::on_sorted() {
  if (tab().shown == ResultState::kFound) {
    const ResultSort sort = tab().list().rows.sort();
    settings_.sort_column = column_name(sort.column);
    settings_.sort_descending = sort.descending;
  }
  arrange(true);
}

}  // namespace zenfo::host::gui::win32
