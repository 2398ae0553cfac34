// The display operations, as exported; zenfofr130.h documents them for hosts.
// All answer -1 while there is no display state, those that need the host's
// window also without one.
//
// Tested by tests/unit/display/display_ops_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

// The model.
int32_t reset_display(Library& library);
int32_t prepare_display(Library& library, const char* separator, int32_t mode);
int32_t get_display_line_count(Library& library);
int32_t get_display_width(Library& library);
int32_t get_display_top_line(Library& library);
int32_t get_display_left_column(Library& library);
int32_t get_display_page_lines(Library& library);
int32_t set_bytes_per_line(Library& library, uint32_t bytes);
int32_t get_bytes_per_line(Library& library);
int32_t get_line_separator(Library& library, char* buffer, uint32_t size);

// The window. A window is a system handle, null for none.
int32_t set_display_window(Library& library, void* handle);
int32_t get_display_scroll_pos(Library& library, int32_t* vertical,
                               int32_t* horizontal);
int32_t get_display_scroll_track_pos(Library& library, int32_t* vertical,
                                     int32_t* horizontal);
int32_t paint_display(Library& library, uint32_t top_line, uint32_t left_column,
                      int32_t line_numbers, int32_t fixed_font);
int32_t repaint_display(Library& library, uint32_t unused, int32_t line_numbers,
                        int32_t fixed_font);

// Groups.
int32_t hit_test_display(Library& library, int32_t x, int32_t y);
int32_t highlight_group(Library& library, uint32_t group, int32_t* position);
int32_t clear_highlight(Library& library);
int32_t mark_groups(Library& library, uint32_t group, int32_t action);

}  // namespace zenfo
