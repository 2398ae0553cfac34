// Finds the parts of one file that a search leaves out, for the Text page: the
// ready-made areas by their scanner, those of a pattern by the library.
//
// Tested by tests/gui/engine/areas_job_test.cpp
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "gui/engine/job.h"
#include "gui/query/query.h"
#include "gui/query/search_plan.h"
#include "shared/text/found_text.h"

namespace zenfo::host::gui {

class AreasJob : public Job {
 public:
  // The parts, in order and apart, are complete when the job has ended. The
  // query must have no faults.
  using Parts = std::shared_ptr<std::vector<Match>>;
  AreasJob(const Query& query, std::string path, Parts parts);

  // Areas of a pattern are known in files with matches only.
  void run(Session& session, Outbox& outbox) override;
  bool give_way() override { return true; }

 private:
  const SearchPlan plan_;
  const std::string path_;
  const Parts parts_;
};

}  // namespace zenfo::host::gui
