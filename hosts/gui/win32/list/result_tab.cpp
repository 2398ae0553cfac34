#include "gui/win32/list/result_tab.h"

#include <utility>

namespace zenfo::host::gui::win32 {
namespace {

uint16_t next_serial() {
  static uint16_t last = 0;  // of the window's thread
  return ++last;
}

}  // namespace

ResultTab::ResultTab(ResultSort sort)
    : set_(std::make_shared<ResultSet>(Query())) {
  make_lists(false);
  list(ResultState::kFound).rows.sort(sort);
}

void ResultTab::make_lists(bool opened) {
  for (const ResultState state : kResultStates) {
    auto& list = lists_[static_cast<size_t>(state)];
    const ResultSort sort = list ? list->rows.sort() : ResultSort{};
    list = std::make_unique<ListState>(*set_, state);
    list->rows.open_all(opened && state == ResultState::kFound);
    list->rows.sort(sort);
  }
  serial_ = next_serial();
}

void ResultTab::begin(const Query& query, JobId job, bool opened) {
  auto fresh = std::make_shared<ResultSet>(query);
  std::swap(set_, fresh);  // The old lists still use the old set.
  make_lists(opened);
  filter_.clear();
  shown = ResultState::kFound;
  job_ = job;
  searched_ = true;
}

void ResultTab::add(JobNews news) {
  const bool ended = news.end.has_value();
  set_->add(std::move(news));
  update();
  if (!ended) return;
  job_ = 0;
  sort_again();
}

void ResultTab::update() {
  for (const auto& list : lists_) list->rows.update();
}

void ResultTab::sort_again() {
  for (const auto& list : lists_) {
    if (list->rows.sort().column != ResultColumn::kFound) {
      list->rows.wish_for_sort(list->rows.sort());
    }
  }
}

void ResultTab::filter(const std::string& text) {
  filter_ = text;
  for (const auto& list : lists_) list->rows.wish_for_filter(text);
}

}  // namespace zenfo::host::gui::win32
