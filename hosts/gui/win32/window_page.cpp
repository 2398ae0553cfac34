// The file beside the results, as text or as bytes.
#include <algorithm>
#include <memory>
#include <utility>

#include "gui/query/query_text.h"
#include "gui/win32/base/messages.h"
#include "gui/win32/base/wide.h"
#include "gui/win32/main_window.h"
#include "gui/win32/system/clipboard.h"
#include "gui/win32/system/editor.h"
#include "gui/win32/system/menu.h"
#include "gui/words/strings.h"
#include "gui/words/unicode.h"
#include "shared/system/paths.h"

namespace zenfo::host::gui::win32 {

HWND MainWindow::page_window() const {
  return page_kind_ == PageKind::kBytes ? bytes_->window() : page_->window();
}

void MainWindow::choose_page(PageKind kind) {
  view_->choose_page(kind);
  if (!settings_.preview_shown) {
    page_kind_ = kind;
    return run(CommandId::kShowPreview);
  }
  if (kind == page_kind_) return;
  const bool had_focus = GetFocus() == page_window();
  clear_page();
  page_kind_ = kind;
  lay_out();
  if (had_focus) SetFocus(page_window());
  show_page();
}

void MainWindow::clear_page() {
  page_->clear();
  bytes_->clear();
  engine_->stop(areas_job_);
  areas_job_ = 0;
  areas_wanted_ = false;
  if (display_) display_->parked.leave();
  display_.reset();
  display_job_ = 0;
  page_serial_ = 0;
}

// Whether it will look different in a moment. A display that is parked is still
// to be painted.
bool MainWindow::page_is_busy() const {
  if (page_kind_ == PageKind::kText) {
    return areas_wanted_ || areas_job_ != 0 || page_->is_counting();
  }
  return display_job_ != 0 && !bytes_->shows(display_.get());
}

void MainWindow::show_page_again() {
  page_serial_ = 0;
  show_page();
}

// The file of the row in focus, at its match. A file in which nothing was found
// is shown from its start.
void MainWindow::show_page() {
  if (!settings_.preview_shown || !engine_) return;
  if (!list_->any_row()) {
    if (page_serial_ != 0) clear_page();
    return;
  }
  const ResultRow row = list_->row();
  const bool same_file =
      page_serial_ == tab().serial() && page_row_.file == row.file;
  if (same_file && page_row_ == row) return;
  page_serial_ = tab().serial();
  page_row_ = row;
  if (page_kind_ == PageKind::kBytes) return show_bytes(same_file);
  if (same_file) return page_->go_to(row.is_file() ? 0 : row.match);
  show_text();
}

void MainWindow::show_text() {
  const ResultFile& file = tab().set().file(page_row_.file);
  page_->show(to_path(file.path), tab().set().matches_of(page_row_.file),
              page_row_.is_file() ? 0 : page_row_.match);
  engine_->stop(areas_job_);
  areas_job_ = 0;
  areas_wanted_ = tab().set().query().areas.use != AreaUse::kEverywhere;
  want_areas();
}

// What the search left out is shown in grey, a moment later, since it is found
// in the engine's thread.
void MainWindow::want_areas() {
  if (!areas_wanted_ || any_running()) return;
  areas_wanted_ = false;
  areas_ = std::make_shared<std::vector<Match>>();
  areas_job_ = engine_->start(std::make_unique<AreasJob>(
      tab().set().query(), tab().set().file(page_row_.file).path, areas_));
}

void MainWindow::on_areas_news(const JobNews& news) {
  if (areas_job_ == 0 || news.job != areas_job_ || !news.end) return;
  areas_job_ = 0;
  page_->show_areas(std::move(*areas_));
}

// The offset of the row's match, or of the file's first one.
std::optional<uint32_t> MainWindow::match_of_page() const {
  if (tab().set().file(page_row_.file).listed == 0) return std::nullopt;
  const uint32_t number = page_row_.is_file() ? 0 : page_row_.match;
  return tab().set().match(page_row_.file, number).offset;
}

// While a search runs the library is in use: the page is shown with the news of
// its end.
void MainWindow::show_bytes(bool same_file) {
  if (same_file && display_) {
    if (bytes_->shows(display_.get())) bytes_->go_to(match_of_page());
    return;
  }
  if (any_running()) {
    bytes_->say(std::string(text(Text::kBytesAfterSearch)));
    page_serial_ = 0;
    return;
  }
  bytes_->say(std::string(text(Text::kBytesReading)));
  const HWND self = window();
  display_ = std::make_shared<BytesDisplay>(
      [self] { PostMessageW(self, kWake, 0, 0); });
  const DisplayWish wish{tab().set().query(),
                         tab().set().file(page_row_.file).path, match_of_page(),
                         bytes_->bytes_that_fit()};
  display_job_ = engine_->start(std::make_unique<DisplayJob>(wish, display_));
}

// As soon as it is parked.
void MainWindow::show_display() {
  if (!display_ || bytes_->shows(display_.get())) return;
  if (!display_->parked.is_parked()) return;
  bytes_->show(display_, match_of_page());
}

void MainWindow::on_display_news(const JobNews& news) {
  if (display_job_ == 0 || news.job != display_job_ || !news.end) return;
  if (news.end->outcome == JobOutcome::kFailed) {
    bytes_->say(news.end->reason);
  }
  display_job_ = 0;
}

// A click on a match of the page goes to its row.
void MainWindow::go_to_match_at(uint32_t offset) {
  const ResultFile& file = tab().set().file(page_row_.file);
  for (uint32_t i = 0; i < file.listed; ++i) {
    if (tab().set().match(page_row_.file, i).offset != offset) continue;
    return list_->go_to({page_row_.file, i});
  }
}

// --- Commands of the text page -----------------------------------------------

void MainWindow::on_menu_of_text(LPARAM at) {
  const POINT point = at == -1 ? page_->menu_place()
                               : POINT{GET_X_LPARAM(at), GET_Y_LPARAM(at)};
  const HMENU menu = make_text_menu(keys_);
  update_menu(menu, state(), is_on, this);
  TrackPopupMenu(menu, TPM_RIGHTBUTTON, point.x, point.y, 0, window(), nullptr);
  DestroyMenu(menu);
}

// As compilers name it, which many programs open.
void MainWindow::copy_place() {
  std::string place = tab().set().file(page_row_.file).path;
  const uint64_t line = page_->caret_line();
  if (line != 0) place += ':' + std::to_string(line);
  if (!copy_text(window(), wide(place))) {
    info_->show(std::string(text(Text::kNotCopied)));
  }
}

void MainWindow::open_at_text() {
  const std::string& path = tab().set().file(page_row_.file).path;
  const uint64_t line = std::max<uint64_t>(page_->caret_line(), 1);
  const std::string reason =
      win32::open_in_editor(window(), settings_, path, line);
  if (!reason.empty()) info_->show(format(Text::kNotOpened, {path, reason}));
}

// Into the field, as it is written there.
void MainWindow::find_text() {
  constexpr uint64_t kMost = 1000;  // bytes
  const std::optional<std::u16string> selected = page_->selected_text(kMost);
  if (!selected) return info_->show(std::string(text(Text::kCopyTooLong)));
  Query query = panel_->query();
  query.text = typed_form(to_utf8(*selected));
  query.is_pattern = query.caret = false;
  panel_->set_query(query);
  panel_->focus_on(QueryField::kText);
}

}  // namespace zenfo::host::gui::win32
