#include "gui/engine/question.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "shared/system/file_state.h"
#include "shared/system/stop.h"

namespace zenfo::host::gui {

Question::Question(const SearchPlan& plan, const MatchCaps& caps,
                   Session& session, const FileList& files,
                   const Search& search, Outbox& outbox)
    : plan_(plan),
      caps_(caps),
      session_(session),
      files_(files),
      search_(search),
      outbox_(outbox) {}

Session::Answer Question::ask() {
  turn_to(Session::files_done());
  if (plan_.kind != nullptr) leave_out_by_area();
  take_matches();
  if (!search_.several_texts()) finish_file();
  return system::stop_status() != 0 ? Session::Answer::kStop
                                    : Session::Answer::kTake;
}

// Makes the file after the first `done` of the run the one in hand.
void Question::turn_to(uint32_t done) {
  if (in_file_ && done == done_) return;
  finish_file();
  for (; index_ < files_.count(); ++index_) {
    if (!session_.selected(index_)) continue;
    if (done_ == done) break;
    ++done_;
  }
  in_file_ = true;
  areas_known_ = false;
  path_ = session_.full_name(index_);
  file_ = {};
  file_.path = files_.shown(path_);
}

// The library counts deselected matches as not found.
void Question::leave_out_by_area() {
  if (!std::exchange(areas_known_, true)) {
    areas_.clear();
    if (bytes_.load(path_)) areas_ = plan_.kind->areas_of(bytes_.view());
  }
  const uint32_t count = matches_in_hand();
  for (uint32_t i = 0; i < count; ++i) {
    if (!is_wanted(match_in_hand(i), areas_, plan_.inside)) {
      SetState(ZENFO_LIST_MATCHES, static_cast<int32_t>(i), 0);
    }
  }
}

void Question::take_matches() {
  const uint64_t room =
      caps_.in_all - std::min<uint64_t>(caps_.in_all, listed_);
  const auto most =
      static_cast<uint32_t>(std::min<uint64_t>(room, caps_.of_file));
  if (plan_.kind == nullptr) {
    file_.count += matches_in_hand();
    search_.append_matches(file_.matches, most);
    return;
  }
  const uint32_t count = matches_in_hand();
  for (uint32_t i = 0; i < count; ++i) {
    if (!session_.selected(ZENFO_LIST_MATCHES, i)) continue;
    ++file_.count;
    if (file_.matches.size() < most) file_.matches.push_back(match_in_hand(i));
  }
}

void Question::finish_file() {
  if (!std::exchange(in_file_, false) || file_.count == 0) return;
  if (search_.several_texts()) unite(file_.matches);
  const uint64_t room =
      caps_.in_all - std::min<uint64_t>(caps_.in_all, listed_);
  const size_t most = std::min<uint64_t>(room, caps_.of_file);
  if (file_.matches.size() > most) file_.matches.resize(most);
  listed_ += file_.matches.size();
  if (const std::optional<FileFacts> facts = facts_of(path_)) {
    file_.size = facts->size;
    file_.modified = facts->modified;
  }
  outbox_.add(std::move(file_));
}

}  // namespace zenfo::host::gui
