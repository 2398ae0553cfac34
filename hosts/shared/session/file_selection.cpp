#include "shared/session/file_selection.h"

#include <algorithm>

#include "shared/frame/failure.h"
#include "shared/system/stop.h"
#include "shared/text/binary.h"

namespace zenfo::host {

std::vector<std::string> preselecting_patterns(
    const std::vector<std::string>& includes) {
  std::vector<std::string> patterns;
  for (const std::string& include : includes) {
    const bool simple = !include.empty() &&
                        include.find_first_of("[]\\;|/") == std::string::npos;
    patterns.push_back(simple ? include : "*");
  }
  std::sort(patterns.begin(), patterns.end());
  patterns.erase(std::unique(patterns.begin(), patterns.end()), patterns.end());
  return patterns;
}

void select_files(Session& session, const FileList& files,
                  const NameFilter& filter) {
  session.select_all(true);
  for (uint32_t i = 0; i < files.count(); ++i) {
    if (files.is_repeat(i) ||
        (!filter.empty() && !files.is_stream(i) &&
         !filter.takes(files.shown(session.full_name(i)), files.is_named(i)))) {
      session.select(i, false);
    }
  }
}

void deselect_binary(Session& session, const FileList& files,
                     const std::function<void(const std::string&)>& tell) {
  for (uint32_t i = 0; i < files.count(); ++i) {
    if (system::stop_status() != 0) throw Stopped{};
    if (!session.selected(i)) continue;
    const std::string path(session.full_name(i));
    if (!begins_as_binary(path)) continue;
    session.select(i, false);
    tell(path);
  }
}

}  // namespace zenfo::host
