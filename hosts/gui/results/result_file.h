// A file of a result, and how its path is cut.
//
// Tested by tests/gui/results/result_set_test.cpp
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zenfo::host::gui {

enum class ResultState : uint8_t { kFound, kNoMatch, kNotSearched };

// Which of a file's matches are chosen.
enum class Choice { kNone, kSome, kAll };

struct ResultFile {
  std::string path;
  uint64_t size = 0;     // when it was searched; 0 if it was not found
  int64_t modified = 0;  // likewise, in the unit of file_state.h
  uint32_t count = 0;    // matches in the file
  uint32_t listed = 0;   // of them in the store, from `first` on
  uint32_t first = 0;
  uint32_t chosen = 0;  // listed matches that are chosen
  uint32_t reason = 0;  // why it was not searched, see ResultSet
  ResultState state = ResultState::kFound;
  bool rest_chosen = true;  // the matches that are not listed
  bool removed = false;     // from the results, never from the disk

  std::string_view name() const;
  // Without the last separator, except of a root.
  std::string_view folder() const;
  // What follows the name's last dot; empty without one and for ".name".
  std::string_view extension() const;
  Choice choice() const;
  uint32_t all_chosen() const {
    return chosen + (rest_chosen ? count - listed : 0);
  }
};

}  // namespace zenfo::host::gui
