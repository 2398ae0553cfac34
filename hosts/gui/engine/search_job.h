// Searches, and tells files with matches while it searches, then those without
// and those not searched.
//
// Tested by tests/gui/engine/search_job_test.cpp
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "gui/engine/job.h"
#include "gui/query/query.h"
#include "gui/query/search_plan.h"
#include "gui/results/match_store.h"

namespace zenfo::host::gui {

class SearchJob : public Job {
 public:
  // The query must have no faults.
  // `paths` makes what is searched in place of the query's folders; it is
  // called by run(), because there may be very many.
  using Paths = std::function<std::vector<std::string>()>;
  explicit SearchJob(const Query& query, MatchCaps caps = {}, Paths paths = {});

  void run(Session& session, Outbox& outbox) override;

 private:
  void leave_out_binary(Session& session, FileList& files, Outbox& outbox);
  void run_over(const FileList& files, Search& search, Session& session,
                Outbox& outbox);
  void tell_others(Session& session, const FileList& files, Outbox& outbox);

  SearchPlan plan_;
  MatchCaps caps_;
  Paths paths_;
};

}  // namespace zenfo::host::gui
