#include "gui/engine/areas_job.h"

#include <utility>

#include "shared/session/search.h"

namespace zenfo::host::gui {

AreasJob::AreasJob(const Query& query, std::string path, Parts parts)
    : plan_(plan_of(query)), path_(std::move(path)), parts_(std::move(parts)) {}

void AreasJob::run(Session& session, Outbox&) {
  if (plan_.kind != nullptr) {
    FileBytes bytes;
    if (!bytes.load(path_)) return;
    *parts_ = left_out(plan_.kind->areas_of(bytes.view()), plan_.inside);
    return;
  }
  if (plan_.search.areas.pattern.empty()) return;
  session.replace_files({path_});
  Search search(session, plan_.search);
  search.compile();
  search.run([&] {
    *parts_ = left_out(areas_in_hand(), plan_.search.areas.inside);
    return Session::Answer::kStop;
  });
}

}  // namespace zenfo::host::gui
