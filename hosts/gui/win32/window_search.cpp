// Searches and tabs of the main window.
#include <algorithm>
#include <memory>
#include <utility>

#include "gui/core/query_text.h"
#include "gui/core/search_job.h"
#include "gui/core/status_text.h"
#include "gui/win32/automation.h"
#include "gui/win32/main_window.h"
#include "gui/win32/messages.h"
#include "gui/win32/wide.h"
#include "shared/system/paths.h"
#include "viewer/screenshot.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr UINT_PTR kPullTimer = 1;
constexpr DWORD kFirstPulls = 50;  // milliseconds: results show at once
constexpr DWORD kPulls = 200;      // then, so that painting has time
constexpr int kManyPulls = 4;
constexpr ULONGLONG kSortAgain = 2000;

}  // namespace

// In the tab in view, unless a search runs there that the user should stop.
void MainWindow::search(const Query& query) {
  const std::vector<QueryFault> faults = faults_of(query);
  if (!faults.empty()) {
    info_->show(faults.front().reason);
    panel_->focus_on(faults.front().field);
    return;
  }
  const std::vector<std::string> notes = notes_on(query);
  info_->show(notes.empty() ? "" : notes.front());
  engine_->stop(tab().job());
  tab().begin(query, engine_->start(std::make_unique<SearchJob>(query)),
              opens_files_);
  pulls_ = 0;
  sorted_ = GetTickCount64();
  view_->choose(ResultState::kFound);
  view_->set_filter("");
  list_->show(tab());
  show_state();
  show_page();
  pull_later(0);
}

void MainWindow::start_search() {
  const Query query = panel_->query();
  panel_->remember(settings_.history);
  panel_->show_history(settings_.history);
  search(query);
}

// The files of the list become where to search.
void MainWindow::search_in_files() {
  Query query = panel_->query();
  query.folders.clear();
  const ResultSet& set = tab().set();
  for (uint32_t file = 0; file < set.count(); ++file) {
    const ResultFile& facts = set.file(file);
    if (facts.state == ResultState::kFound && !facts.removed) {
      query.folders.push_back(facts.path);
    }
  }
  search(query);
}

// The button and the key may be used again at once; the rest comes with the
// job's last news.
void MainWindow::stop_search() { engine_->stop(tab().job()); }

void MainWindow::add_tab() {
  if (!tabs_.empty()) tab().fields = panel_->query();
  tabs_.push_back(std::make_unique<ResultTab>());
  tabs_.back()->fields = panel_->query();
  strip_->add(wide(Text::kNewSearch));
  list_->leave();
  current_ = tabs_.size() - 1;
  strip_->choose(static_cast<int>(current_));
  view_->choose(tab().shown);
  view_->set_filter("");
  list_->show(tab());
  show_state();
  show_page();
}

void MainWindow::close_tab(int index) {
  if (tabs_.size() < 2) return;
  const auto at = static_cast<size_t>(index);
  engine_->stop(tabs_[at]->job());
  const auto next = std::min(at, tabs_.size() - 2);
  const size_t other = at == next ? at + 1 : next;
  // The list must not look at the tab any more when it goes.
  list_->show(*tabs_[other]);
  tabs_.erase(tabs_.begin() + index);
  strip_->remove(index);
  current_ = std::min(current_, tabs_.size() - 1);
  strip_->choose(static_cast<int>(next));
  show_tab(static_cast<int>(next));
}

void MainWindow::show_tab(int index) {
  const auto wanted = static_cast<size_t>(index);
  if (wanted >= tabs_.size()) return;
  if (wanted != current_) {
    tab().fields = panel_->query();
    list_->leave();
  }
  current_ = wanted;
  panel_->set_query(tab().fields);
  view_->choose(tab().shown);
  view_->set_filter(tab().filter_text());
  list_->show(tab());
  show_state();
  show_page();
}

// News is fetched at a rate of the window's own: a message for each file would
// keep it from painting.
void MainWindow::pull() {
  KillTimer(window(), kPullTimer);
  const ULONGLONG start = GetTickCount64();
  bool in_view = false;
  for (JobNews& news : engine_->take()) {
    on_display_news(news);
    for (size_t i = 0; i < tabs_.size(); ++i) {
      if (tabs_[i]->job() != news.job) continue;
      tabs_[i]->add(std::move(news));
      in_view |= i == current_;
      strip_->rename(static_cast<int>(i), wide(tab_title(tabs_[i]->set())));
      break;
    }
  }
  if (in_view && tab().running() && start - sorted_ > kSortAgain) {
    tab().sort_again();
    sorted_ = start;
  }
  if (in_view) {
    list_->refresh();
    show_state();
  }
  show_display();
  show_page();
  ++pulls_;
  if (!engine_->idle()) {
    pull_later(static_cast<DWORD>(GetTickCount64() - start));
  }
  tell_if_idle();
}

void MainWindow::pull_later(DWORD spent) {
  const DWORD least = pulls_ < kManyPulls ? kFirstPulls : kPulls;
  SetTimer(window(), kPullTimer, std::max(least, 3 * spent), nullptr);
}

void MainWindow::show_state() {
  if (!engine_) return;
  const ResultSet& set = tab().set();
  panel_->set_running(tab().running());
  view_->show_counts(set.totals());
  status_->show(tab().searched() ? wide(status_line(set)) : L"");
  if (tab().running()) {
    status_->show_progress(set.progress());
    taskbar_.show(window(), set.progress());
  } else {
    status_->hide_progress();
    taskbar_.hide(window());
  }
  const Query& query = set.query();
  const std::wstring title =
      tab().searched() ? wide(format(Text::kWindowTitle,
                                     {query.text, join_list(query.folders)}))
                       : wide(Text::kProgram);
  SetWindowTextW(window(), title.c_str());
}

bool MainWindow::any_running() const {
  return std::any_of(tabs_.begin(), tabs_.end(),
                     [](const auto& one) { return one->running(); });
}

bool MainWindow::is_idle() const {
  const bool in_dialog = !IsWindowEnabled(window());
  const bool to_paint =
      display_job_ != 0 && !bytes_->shows(display_.get());  // but parked
  return !any_running() && !in_dialog && !to_paint && engine_->idle() &&
         !lines_->waiting();
}

// After all that is painted or waits in the queue.
void MainWindow::tell_if_idle() {
  if (wait_for_idle_.empty() && (startup_.shot.empty() || picture_taken_)) {
    return;
  }
  if (!is_idle()) return;
  RedrawWindow(window(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
  if (!is_idle()) return;  // Painting asked for lines.
  if (!startup_.shot.empty()) take_picture();
  JsonValue reply;
  reply["idle"] = true;
  for (const HWND asker : std::exchange(wait_for_idle_, {})) {
    answer(window(), asker, reply);
  }
}

void MainWindow::take_picture() {
  picture_taken_ = true;
  const bool saved = viewer::save_screenshot(window(), wide(startup_.shot));
  PostQuitMessage(saved ? 0 : 2);
}

// What a command line says: of this start, or of a later one.
void MainWindow::take_over(const ProgramOptions& options) {
  if (options.has_query) {
    panel_->set_query(options.query);
    // What is asked for must be seen.
    const bool more = options.query.areas.use != AreaUse::kEverywhere ||
                      options.query.binary == BinaryFiles::kSearch;
    if (more && !panel_->more_shown()) run(CommandId::kMore);
  }
  if (options.run) {
    start_search();
  } else if (!startup_.shot.empty()) {
    PostMessageW(window(), kCheckIdle, 0, 0);
  }
}

}  // namespace zenfo::host::gui::win32
