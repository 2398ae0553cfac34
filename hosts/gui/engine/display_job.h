// Shows the bytes of one file with the library's own display: searches it
// again, lays it out and waits in the question while the window paints.
//
// Tested by tests/gui/engine/display_job_test.cpp
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "gui/engine/display_groups.h"
#include "gui/engine/job.h"
#include "gui/engine/parked_display.h"
#include "gui/query/query.h"
#include "gui/query/search_plan.h"

namespace zenfo::host::gui {

struct DisplayWish {
  Query query;  // without faults
  std::string path;
  // An offset at which the search found a match; none for a file without any.
  std::optional<uint32_t> match;
  uint32_t bytes_in_line = 16;
};

// What the job and the window share.
struct BytesDisplay {
  explicit BytesDisplay(ParkedDisplay::Notice notice)
      : parked(std::move(notice)) {}

  ParkedDisplay parked;
  DisplayGroups groups;  // while it is parked
};

class DisplayJob : public Job {
 public:
  DisplayJob(const DisplayWish& wish, std::shared_ptr<BytesDisplay> display);

  // Throws Failure if there is nothing to show.
  void run(Session& session, Outbox& outbox) override;
  bool give_way() override;
  bool is_parked() const override { return display_->parked.is_parked(); }

 private:
  void show_matches(Session& session);
  void show_plain(Session& session);
  bool mark_matches();
  Session::Answer show();

  const SearchPlan plan_;
  const std::string path_;
  const std::optional<uint32_t> match_;
  const uint32_t bytes_in_line_;
  const std::shared_ptr<BytesDisplay> display_;
  bool shown_ = false;
};

}  // namespace zenfo::host::gui
