#include "shared/runs/targets.h"

#include <optional>
#include <utility>

#include "shared/frame/counted.h"
#include "shared/system/system.h"
#include "shared/text/binary.h"

namespace zenfo::host {

void Targets::find(Search& search) {
  FileList files(session_);
  files.fill(plan_.paths, plan_.choice, FactOptions{});
  choose(files);
  Session::Question question;
  if (plan_.stays) question = [&] { return leave_unchanged(files); };
  if (search.run(question) > 0) take_found(files);
  if (links_ > 0) {
    session_.messages().remark(
        "", counted(links_, "link", "links") +
                " skipped; name one to change the file it leads to");
  }
  name_rejected(files);
}

uint64_t Targets::matches() const {
  uint64_t sum = 0;
  for (const Target& target : targets_) sum += target.matches;
  return sum;
}

void Targets::choose(FileList& files) {
  session_.select_all(true);
  for (uint32_t i = 0; i < files.count(); ++i) {
    const std::string path(files.path(i));
    if (files.is_repeat(i) || !plan_.filter.takes(path, files.is_named(i))) {
      session_.select(i, false);
    } else if (files.is_named(i)) {
      named_.emplace(session_.full_name(i));
    }
  }
}

// Finds the file in hand, which is the first selected file after the finished
// ones, and deselects its matches that would not change.
Session::Answer Targets::leave_unchanged(const FileList& files) {
  for (; next_ < files.count(); ++next_) {
    if (!session_.selected(next_)) continue;
    if (passed_ == Session::files_done()) break;
    ++passed_;
  }
  deselect_unchanged(std::string(session_.full_name(next_)), plan_.stays);
  return Session::Answer::kTake;
}

void Targets::take_found(const FileList& files) {
  const uint32_t count = Session::records_in(ZENFO_LIST_RESULT);
  for (uint32_t i = 0; i < count; ++i) {
    const std::string path(session_.full_name(ZENFO_LIST_RESULT, i));
    const bool link = is_link(path);
    if (link && !named_.contains(path)) {
      ++links_;
      continue;
    }
    Target target;
    target.shown = files.shown(path);
    target.path = resolved_path(path, link);
    target.matches = static_cast<uint32_t>(GetFlag(ZENFO_LIST_RESULT, i));
    take(std::move(target));
  }
}

void Targets::take(Target target) {
  const std::optional<FileState> state = state_of(target.path);
  if (!state) {
    skipped_.complain_of(target.shown, "it is gone");
    return;
  }
  // A file may have several names, or be named several times.
  if (!identities_.insert(state->identity).second) return;
  target.before = *state;
  const std::string reason = why_not_taken(target);
  if (reason.empty()) {
    targets_.push_back(std::move(target));
  } else {
    skipped_.complain_of(target.shown, reason);
  }
}

std::string Targets::why_not_taken(const Target& target) {
  // A file that can be opened for writing need not be asked for its rights.
  const bool writable =
      !target.before.read_only && why_not_written(target.path).empty();
  const bool read_only = !writable && is_read_only(target.path, target.before);
  if (read_only && !plan_.read_only) return "read-only";
  if (!plan_.no_backup &&
      target.path.find_first_of("\t\r\n") != std::string::npos) {
    return "with such a name it could not be undone";
  }
  std::string reason = why_not_text(target.path);
  if (!reason.empty()) return reason;
  // A single file that cannot be written would end the run.
  return read_only || writable ? "" : why_not_written(target.path);
}

// Except for changes of case, the library drops what follows the first zero
// byte of a file that it rewrites.
std::string Targets::why_not_text(const std::string& path) {
  if (plan_.binary && !plan_.cuts_at_zero_byte) return "";
  const std::optional<bool> zero = zero_bytes_.in(path);
  if (!zero) return system::why_not_loaded(path, "cannot be read");
  if (!*zero) return "";
  return plan_.binary ? "what follows its first zero byte would be lost"
                      : "binary";
}

void Targets::name_rejected(const FileList& files) {
  const uint32_t count = Session::records_in(ZENFO_LIST_ERROR);
  for (uint32_t i = 0; i < count; ++i) {
    const std::string path(session_.full_name(ZENFO_LIST_ERROR, i));
    skipped_.complain_of(files.shown(path),
                         system::why_not_loaded(path, "cannot be read"));
  }
  session_.new_errors();  // drops them: complained of above
}

}  // namespace zenfo::host
