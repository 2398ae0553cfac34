// What happens in the library's question for each file with matches: path,
// offsets and lengths are copied, nothing else. Only ready-made areas need the
// file's text.
//
// Tested by tests/gui/engine/search_job_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gui/query/search_plan.h"
#include "gui/results/match_store.h"
#include "gui/results/outbox.h"
#include "shared/session/file_arguments.h"
#include "shared/session/search.h"
#include "shared/session/session.h"

namespace zenfo::host::gui {

class Question {
 public:
  Question(const SearchPlan& plan, const MatchCaps& caps, Session& session,
           const FileList& files, const Search& search, Outbox& outbox);

  // To be called in the question, and when the run has ended.
  Session::Answer ask();
  void finish() { finish_file(); }

 private:
  void turn_to(uint32_t done);
  void finish_file();
  void take_matches();
  void leave_out_by_area();

  const SearchPlan& plan_;
  const MatchCaps caps_;
  Session& session_;
  const FileList& files_;
  const Search& search_;
  Outbox& outbox_;

  bool in_file_ = false;
  uint32_t index_ = 0;   // of the file in hand in the list of files
  uint32_t done_ = 0;    // files of the run before it
  uint64_t listed_ = 0;  // matches told
  std::string path_;     // of the file in hand, as the library has it
  FoundFile file_;
  FileBytes bytes_;  // of the file in hand
  bool areas_known_ = false;
  std::vector<Match> areas_;
};

}  // namespace zenfo::host::gui
