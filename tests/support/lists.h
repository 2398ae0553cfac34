// The lists of the library, grouped by their contents.
#pragma once

#include <cstdint>

#include "zenfofr130.h"

namespace zenfo::test {

// The list for tests that need files but no run.
inline constexpr int32_t kFiles = ZENFO_LIST_OTHER_FILES;
// A number that no list has.
inline constexpr int32_t kNoList = 11;

inline constexpr int32_t kAllLists[] = {
    ZENFO_LIST_OTHER_FILES, ZENFO_LIST_RUN_FILES,      ZENFO_LIST_PAIRS,
    ZENFO_LIST_UNDO,        ZENFO_LIST_RESULT,         ZENFO_LIST_MATCHES,
    ZENFO_LIST_NO_MATCH,    ZENFO_LIST_ERROR,          ZENFO_LIST_VALUES,
    ZENFO_LIST_EXCLUDED,    ZENFO_LIST_REPLACE_MATCHES};

inline constexpr int32_t kMatchLists[] = {
    ZENFO_LIST_MATCHES, ZENFO_LIST_EXCLUDED, ZENFO_LIST_REPLACE_MATCHES};

// Lists that file entries can be added to, and lists that refuse them.
inline constexpr int32_t kFileLists[] = {
    ZENFO_LIST_OTHER_FILES, ZENFO_LIST_RUN_FILES, ZENFO_LIST_PAIRS,
    ZENFO_LIST_RESULT,      ZENFO_LIST_NO_MATCH,  ZENFO_LIST_ERROR};
inline constexpr int32_t kNoFileLists[] = {
    ZENFO_LIST_UNDO, ZENFO_LIST_MATCHES, ZENFO_LIST_VALUES, ZENFO_LIST_EXCLUDED,
    ZENFO_LIST_REPLACE_MATCHES};

}  // namespace zenfo::test
