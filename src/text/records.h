// Record splitter: cuts a text at a separator, one record a call.
//
// Tested by tests/unit/text/records_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>

namespace zenfo {

// Takes the record at *cursor and moves the cursor behind its separator, or to
// null when the record was the rest of the text. An empty separator gives the
// rest of the text. Answers 1 with a record, -1 when there is none (null
// cursor, text end or separator, or a cursor not below the text end); the out
// start is then the cursor and the out length 0.
int32_t get_next_record(const char** cursor, const char* text_end,
                        const char* separator, size_t separator_length,
                        const char** record, size_t* record_length);

}  // namespace zenfo
