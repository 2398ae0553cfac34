// Where a run puts its files: into the result lists, or as lines into a result
// summary file.
//
// Tested by tests/unit/search/run_results_test.cpp
#pragma once

#include "containers/item_list.h"
#include "search/file_source.h"
#include "text/out_file.h"

namespace zenfo {

class RunResults {
 public:
  virtual ~RunResults() = default;
  // The file could not be loaded, or contains a non-printable byte.
  virtual void rejected(FileInHand& file) = 0;
  // Its matches are counted; nothing has been done with them yet.
  virtual void counted(FileInHand&) {}
  // No safe copy could be made: the file was left as it is.
  virtual void unsaved(FileInHand& file) { rejected(file); }
  // The file was searched and accepted, and the work on it is done.
  virtual void taken(FileInHand& file) = 0;
  // The file was empty: there was nothing to search.
  virtual void empty(FileInHand& file) = 0;
  // Ends the results of a run; false when one could not be written.
  virtual bool finish() = 0;
};

// List 4 takes files with selected matches, 6 those without, 7 the rejected.
class ListResults final : public RunResults {
 public:
  ListResults(ItemList& results, ItemList& no_matches, ItemList& errors)
      : results_(results), no_matches_(no_matches), errors_(errors) {}

  void rejected(FileInHand& file) override;
  // The copy's flag becomes the number of selected matches.
  void taken(FileInHand& file) override;
  void empty(FileInHand& file) override { taken(file); }
  bool finish() override;

 private:
  ItemList& results_;
  ItemList& no_matches_;
  ItemList& errors_;
};

// A result summary file, a line for each file.
// Intended: lines end in CR CR LF, as CR LF goes through a text-mode file.
class SummaryFile : public RunResults {
 public:
  // False when the file cannot be created.
  bool open(const char* path);
  bool finish() override { return file_.close(); }

 protected:
  OutFile file_;
};

// The lines of a search: "path, found 3". Rejected and empty files get none.
class SearchSummary final : public SummaryFile {
 public:
  void rejected(FileInHand&) override {}
  void taken(FileInHand& file) override;
  void empty(FileInHand&) override {}
};

}  // namespace zenfo
