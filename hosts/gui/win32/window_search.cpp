// Searches and tabs of the main window.
#include <algorithm>
#include <memory>
#include <utility>

#include "gui/engine/search_job.h"
#include "gui/query/query_text.h"
#include "gui/results/status_text.h"
#include "gui/win32/base/messages.h"
#include "gui/win32/base/wide.h"
#include "gui/win32/main_window.h"
#include "gui/win32/system/automation.h"
#include "shared/system/paths.h"
#include "viewer/screenshot.h"

namespace zenfo::host::gui::win32 {
namespace {

constexpr DWORD kFirstPulls = 50;  // milliseconds: results show at once
constexpr DWORD kPulls = 200;      // then, so that painting has time
constexpr int kManyPulls = 4;
constexpr ULONGLONG kSortAgain = 2000;
// So many files are sorted or filtered at once, more on another thread.
constexpr uint32_t kArrangedAtOnce = 3000;
// So many of the files that are searched again are named.
constexpr size_t kFilesShown = 3;

}  // namespace

// In the tab in view, unless a search runs there that the user should stop.
void MainWindow::search(Query query, SearchJob::Paths paths) {
  const std::vector<QueryFault> faults = faults_of(query);
  if (!faults.empty()) {
    info_->show(faults.front().reason);
    panel_->focus_on(faults.front().field);
    return;
  }
  const std::vector<std::string> notes = notes_on(query);
  info_->show(notes.empty() ? "" : notes.front());
  engine_->stop(tab().job());
  auto job = make_job_ ? make_job_(query)
                       : std::make_unique<SearchJob>(query, MatchCaps(),
                                                     std::move(paths));
  tab().begin(query, engine_->start(std::move(job)), opens_files_);
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
  panel_->remember(settings_.history);
  panel_->show_history(settings_.history);
  search(panel_->query());
}

// The files of the list become where to search.
void MainWindow::search_in_files() {
  std::vector<const std::string*> paths;
  const std::shared_ptr<const ResultSet> set = tab().shared_set();
  for (uint32_t file = 0; file < set->count(); ++file) {
    const ResultFile& facts = set->file(file);
    if (facts.state != ResultState::kFound || facts.removed) continue;
    paths.push_back(&facts.path);
  }
  Query query = panel_->query();
  query.folders.clear();
  for (size_t i = 0; i < std::min(paths.size(), kFilesShown); ++i) {
    query.folders.push_back(*paths[i]);
  }
  if (paths.size() > kFilesShown) query.folders.push_back("...");
  search(std::move(query), [set, paths = std::move(paths)] {
    std::vector<std::string> copies;
    for (const std::string* path : paths) copies.push_back(*path);
    return copies;
  });
}

// The button and the key may be used again at once; the rest comes with the
// job's last news.
void MainWindow::stop_search() {
  if (tab().running()) {
    engine_->stop(tab().job());
  } else {
    writer_->stop();
  }
}

void MainWindow::add_tab() {
  if (!tabs_.empty()) tab().fields = panel_->query();
  const ResultSort sort{column_of(settings_.sort_column),
                        settings_.sort_descending};
  tabs_.push_back(std::make_unique<ResultTab>(sort));
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
  const bool in_view = at == current_;
  engine_->stop(tabs_[at]->job());
  // The list must not look at the tab any more when it goes.
  if (in_view) list_->show(*tabs_[at + 1 < tabs_.size() ? at + 1 : at - 1]);
  tabs_.erase(tabs_.begin() + index);
  strip_->remove(index);
  if (current_ > at || current_ == tabs_.size()) --current_;
  strip_->choose(static_cast<int>(current_));
  if (in_view) show_tab(static_cast<int>(current_));
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
// keep it from painting. Of many news only a part is taken.
void MainWindow::pull() {
  KillTimer(window(), kPullTimer);
  const ULONGLONG start = GetTickCount64();
  news_.add(engine_->take());
  if (!news_.empty()) take_news(news_.next());
  show_display();
  show_page();
  want_areas();
  ++pulls_;
  if (!news_.empty()) {
    // A timer waits for what the user does, a message would not.
    SetTimer(window(), kPullTimer, USER_TIMER_MINIMUM, nullptr);
  } else if (!engine_->idle()) {
    pull_later(static_cast<DWORD>(GetTickCount64() - start));
  }
  tell_if_idle();
}

void MainWindow::take_news(JobNews news) {
  on_display_news(news);
  on_areas_news(news);
  const JobId job = news.job;
  const auto owner =
      std::find_if(tabs_.begin(), tabs_.end(),
                   [&](const auto& one) { return one->job() == job; });
  if (owner == tabs_.end()) return;  // Its tab was closed.
  ResultTab& taker = **owner;
  taker.add(std::move(news));
  strip_->rename(static_cast<int>(owner - tabs_.begin()),
                 wide(tab_title(taker.set())));
  if (taker.running() && GetTickCount64() - sorted_ > kSortAgain) {
    taker.sort_again();
    sorted_ = GetTickCount64();
  }
  arrange(false);
  if (&taker != &tab()) return;
  list_->refresh();
  show_state();
}

// Fulfils wishes for another order: `anew` when the user has one, so that an
// arrangement under way is of no use.
void MainWindow::arrange(bool anew) {
  if (anew) arranger_->stop();
  bool in_view = false;
  for (const auto& one : tabs_) {
    for (const ResultState state : kResultStates) {
      ListState& list = one->list(state);
      if (list.rows.is_arranged()) continue;
      const bool done = arrange_list(*one, list);
      in_view |= done && &list == &tab().list();
    }
  }
  if (in_view) list_->refresh();
}

// False while another thread does it, which then comes back here.
bool MainWindow::arrange_list(ResultTab& owner, ListState& list) {
  if (owner.set().count() <= kArrangedAtOnce) {
    list.rows.arrange_now();
    return true;
  }
  if (arranger_->busy()) return false;
  const auto work = std::make_shared<Arrangement>(list.rows.arrangement());
  const ResultState state = list.state;
  arranger_->start(
      // Keeps the set, too.
      [work, set = owner.shared_set()](SideThread::Control& control) {
        work->run(&control.stop);
      },
      [this, work, state, serial = owner.serial()] {
        const bool good = !arranger_->stopped() && arranger_->failure().empty();
        for (const auto& one : tabs_) {
          if (one->serial() != serial || !good) continue;
          one->list(state).rows.take(*work);
          if (&one->list(state) == &tab().list()) list_->refresh();
        }
        if (arranger_->failure().empty()) arrange(false);
      });
  return false;
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
      tab().searched()
          ? wide(format(Text::kWindowTitle,
                        {field_form(query.text), join_list(query.folders)}))
          : wide(Text::kProgram);
  SetWindowTextW(window(), title.c_str());
}

bool MainWindow::any_running() const {
  return std::any_of(tabs_.begin(), tabs_.end(),
                     [](const auto& one) { return one->running(); });
}

bool MainWindow::is_idle() const {
  const bool in_dialog = !IsWindowEnabled(window());
  return !any_running() && !in_dialog && !page_is_busy() && news_.empty() &&
         !arranger_->busy() && !writer_->busy() && engine_->idle() &&
         !lines_->waiting() && !icons_->waiting();
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
