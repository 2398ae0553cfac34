#include "gui/engine/display_job.h"

#include "gui/words/strings.h"
#include "shared/frame/failure.h"
#include "shared/session/search.h"
#include "shared/system/system.h"
#include "shared/text/found_text.h"
#include "zenfofr130.h"

namespace zenfo::host::gui {
namespace {

constexpr uint32_t kAllGroups = UINT32_MAX;
constexpr int32_t kPlain = 0;

// A pattern that is found in any file that is not empty, and not too often:
// runs of other bytes than 1, or of these.
std::string pattern_of_any(const std::string& path) {
  FileBytes bytes;
  const bool odd = bytes.load_start(path, 1) && bytes.view() == "\x01";
  return odd ? "'\x01'[1-]" : "!'\x01'[1-]";
}

}  // namespace

DisplayJob::DisplayJob(const DisplayWish& wish,
                       std::shared_ptr<BytesDisplay> display)
    : plan_(plan_of(wish.query)),
      path_(wish.path),
      match_(wish.match),
      bytes_in_line_(wish.bytes_in_line),
      display_(std::move(display)) {}

bool DisplayJob::give_way() {
  display_->parked.leave();
  return true;
}

void DisplayJob::run(Session& session, Outbox&) {
  session.replace_files({path_});
  if (match_) show_matches(session);
  if (!shown_) show_plain(session);
  if (shown_) return;
  const bool read = Session::records_in(ZENFO_LIST_ERROR) == 0;
  throw Failure{"", read ? std::string(text(Text::kNoBytes))
                         : system::why_not_loaded(path_, "cannot be read")};
}

// Where several texts are searched for, there is a question for each.
void DisplayJob::show_matches(Session& session) {
  Search search(session, plan_.search);
  search.compile();
  search.run([&] {
    if (search.several_texts() && !display_->groups.group_at(*match_)) {
      return Session::Answer::kTake;
    }
    return mark_matches() ? show() : Session::Answer::kStop;
  });
}

// A file without matches is shown with those of another pattern, unmarked.
void DisplayJob::show_plain(Session& session) {
  SearchOptions options;
  options.texts = {pattern_of_any(path_)};
  options.is_pattern = true;
  constexpr char kNone[] = "";
  SetExclusionPattern(kNone, kNone, kNone, 0, 0, 0, 0, 0, 0);
  Search search(session, options);
  search.compile();
  search.run([&] {
    SetBytesPerLine(bytes_in_line_);
    PrepareDisplay("", 0);
    MarkGroups(kAllGroups, kPlain);
    return show();
  });
}

// Areas of a pattern are groups of the display, for what they leave out. Of
// ready-made areas the library knows nothing: matches in them are not marked.
// False without memory for millions of marks: the file is then shown plain.
bool DisplayJob::mark_matches() {
  const bool inside = plan_.search.areas.inside;
  SetBytesPerLine(bytes_in_line_);
  if (PrepareDisplay("", inside) != 1) return false;
  display_->groups = DisplayGroups(areas_in_hand(), inside);
  if (plan_.kind == nullptr) return true;
  FileBytes bytes;
  if (!bytes.load(path_)) return true;
  const std::vector<Match> areas = plan_.kind->areas_of(bytes.view());
  const uint32_t count = matches_in_hand();
  for (uint32_t i = 0; i < count; ++i) {
    if (!is_wanted(match_in_hand(i), areas, plan_.inside)) {
      MarkGroups(i, kPlain);
    }
  }
  return true;
}

Session::Answer DisplayJob::show() {
  shown_ = true;
  display_->parked.park();
  SetDisplayWindow(nullptr);
  return Session::Answer::kStop;
}

}  // namespace zenfo::host::gui
