#include "shared/runs/rehearsal.h"

#include <fstream>

#include "shared/frame/failure.h"
#include "shared/system/paths.h"
#include "shared/system/stop.h"
#include "shared/system/system.h"
#include "shared/system/temporary_folder.h"
#include "shared/text/found_text.h"

namespace zenfo::host {

namespace {

// Copies the bytes but not the access rights, so that the copy can be written.
void copy_bytes(const std::string& from, const std::string& to) {
  FileBytes bytes;
  std::ofstream file(to_path(to), std::ios::binary);
  if (!bytes.load(from)) {
    throw Failure{from, system::why_not_loaded(from, "cannot be read")};
  }
  file.write(bytes.view().data(),
             static_cast<std::streamsize>(bytes.view().size()));
  file.close();
  if (!file) throw Failure{to, "cannot be written"};
}

}  // namespace

void Rehearsal::copy_files() {
  for (const Target& target : targets_) {
    copies_.push_back(temporary_folder::make_file());
    copy_bytes(target.path, copies_.back());
    if (system::stop_status() != 0) throw Stopped{};
  }
}

uint32_t Rehearsal::run(const ChangePlan& plan, const Change& change) {
  copy_files();
  session_.replace_files(copies_);
  Session::Question question;
  if (plan.stays) {
    question = [&] {
      deselect_unchanged(copies_[Session::files_done()], plan.stays);
      return Session::Answer::kTake;
    };
  }
  const int32_t result = session_.run_changes(
      [&] { return change(question != nullptr, false); }, question);
  if (system::stop_status() != 0) throw Stopped{};
  if (result < 0) {
    session_.complain_about_errors();
    throw Failure{"", "the changes cannot be made"};
  }
  return static_cast<uint32_t>(result);
}

uint64_t Rehearsal::compare(const Visit& visit) {
  FileBytes before, after;
  uint64_t files = 0;
  for (size_t i = 0; i < targets_.size(); ++i) {
    const Target& target = targets_[i];
    if (!before.load(target.path) || !after.load(copies_[i])) {
      throw Failure{target.shown,
                    system::why_not_loaded(target.path, "cannot be read")};
    }
    files += before.view() != after.view();
    visit(target, before.view(), after.view());
  }
  return files;
}

}  // namespace zenfo::host
