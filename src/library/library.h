// The library object: everything that lives between Initialize and Terminate,
// in its order of creation, and the registry of numbered lists.
//
// Tested by tests/unit/library/library_test.cpp
#pragma once

#include <cstdint>
#include <memory>

#include "containers/item_list.h"
#include "display/model.h"
#include "files/file_content.h"
#include "frame/error_log.h"
#include "pattern/context.h"
#include "undo/safe_store.h"

namespace zenfo {

class Library {
 public:
  // Destroys what an earlier call created, then creates everything with the
  // host's hooks installed: 1. An object for which there is no memory stays
  // null, and the operations that need it fail.
  int32_t initialize();
  // Destroys in order of creation: 1. Missing objects are skipped. The host's
  // callbacks stay as they are.
  int32_t terminate();

  // The list of a number, or null. An unknown number is logged; a number whose
  // object does not exist is not.
  ItemList* get_list(int32_t number);

  // The context whose match list has that number, or null.
  PatternContext* get_context(int32_t number);

  bool initialized() const { return find_context != nullptr; }
  // Whether all objects exist: none is missing for lack of memory.
  bool complete() const;

  std::unique_ptr<ItemList> other_files;
  std::unique_ptr<ItemList> run_files;
  std::unique_ptr<ItemList> results;
  std::unique_ptr<ItemList> no_matches;
  std::unique_ptr<ItemList> errors;
  std::unique_ptr<ItemList> pairs;
  std::unique_ptr<ItemList> values;
  std::unique_ptr<PatternContext> find_context;
  std::unique_ptr<PatternContext> exclusion_context;
  std::unique_ptr<PatternContext> replace_context;
  std::unique_ptr<SafeStore> safe_store;
  std::unique_ptr<ErrorLog> error_log;
  std::unique_ptr<DisplayState> display;

  // The content that word counts load files into, kept from count to count; the
  // first count creates it. It has no hooks.
  std::unique_ptr<FileContent> counted_content;
  // The context with the hooks of these counts, kept likewise. It contains no
  // pattern.
  std::unique_ptr<PatternContext> counting_context;
};

// The one library of the process; empty until Initialize.
Library& library();

}  // namespace zenfo
