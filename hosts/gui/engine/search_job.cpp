#include "gui/engine/search_job.h"

#include <string>
#include <utility>

#include "gui/engine/question.h"
#include "shared/frame/failure.h"
#include "shared/session/file_selection.h"
#include "shared/session/search.h"
#include "shared/system/stop.h"
#include "shared/system/system.h"
#include "shared/text/found_text.h"

namespace zenfo::host::gui {
namespace {

// Why a file with a zero byte at its beginning is skipped.
std::string kind_of_binary(const std::string& path) {
  FileBytes bytes;
  if (!bytes.load_start(path, 2)) return "binary";
  const bool utf16 = bytes.view() == "\xFF\xFE" || bytes.view() == "\xFE\xFF";
  return utf16 ? "UTF-16 text" : "binary";
}

// The paths of a result list.
template <class Tell>
void for_each_path(Session& session, int32_t list, const FileList& files,
                   Tell tell) {
  const uint32_t count = Session::records_in(list);
  for (uint32_t i = 0; i < count; ++i) {
    const std::string path(session.full_name(list, i));
    tell(path, std::string(files.shown(path)));
  }
}

}  // namespace

SearchJob::SearchJob(const Query& query, MatchCaps caps, Paths paths)
    : plan_(plan_of(query)), caps_(caps), paths_(std::move(paths)) {}

void SearchJob::run(Session& session, Outbox& outbox) {
  if (paths_) plan_.paths = paths_();
  Search search(session, plan_.search);
  search.compile();
  FileList files(session);
  files.fill(plan_.paths, plan_.choice, FactOptions{});
  select_files(session, files, plan_.filter);
  if (plan_.skip_binary) leave_out_binary(session, files, outbox);
  try {
    run_over(files, search, session, outbox);
  } catch (const Stopped&) {
    tell_others(session, files, outbox);
    throw;
  }
  tell_others(session, files, outbox);
}

void SearchJob::leave_out_binary(Session& session, FileList& files,
                                 Outbox& outbox) {
  outbox.set_phase(JobPhase::kChecking);
  deselect_binary(session, files, [&](const std::string& path) {
    outbox.add(OtherFile{std::string(files.shown(path)),
                         ResultState::kNotSearched, kind_of_binary(path)});
  });
}

void SearchJob::run_over(const FileList& files, Search& search,
                         Session& session, Outbox& outbox) {
  outbox.set_phase(JobPhase::kSearching);
  Question question(plan_, caps_, session, files, search, outbox);
  try {
    search.run([&] { return question.ask(); });
  } catch (const Stopped&) {
    question.finish();
    throw;
  }
  question.finish();
}

// The lists are read to their ends after a stop too. A file that could not be
// loaded is read by the host, which knows more words for it; after a stop that
// would take too long.
void SearchJob::tell_others(Session& session, const FileList& files,
                            Outbox& outbox) {
  outbox.set_phase(JobPhase::kCollecting);
  const bool stopped = system::stop_status() != 0;
  session.hold_stop(true);
  for_each_path(
      session, ZENFO_LIST_NO_MATCH, files,
      [&](const std::string&, std::string shown) {
        outbox.add(OtherFile{std::move(shown), ResultState::kNoMatch, ""});
      });
  for_each_path(
      session, ZENFO_LIST_ERROR, files,
      [&](const std::string& path, std::string shown) {
        constexpr char kUnknown[] = "could not be opened";
        outbox.add(OtherFile{
            std::move(shown), ResultState::kNotSearched,
            stopped ? kUnknown : system::why_not_loaded(path, kUnknown)});
      });
}

}  // namespace zenfo::host::gui
