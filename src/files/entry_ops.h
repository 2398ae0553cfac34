// Accessors and counts of the lists, as exported; zenfofr130.h documents them
// for hosts.
//
// A missing list, record or text answers -1 unlogged, and so does a record of
// another kind than the accessor reads.
//
// Tested by tests/contract/entry_test.cpp
#pragma once

#include <cstdint>

#include "frame/library.h"

namespace zenfo {

int32_t get_filename(Library& library, int32_t list, uint32_t index,
                     char* buffer, uint32_t size);
int32_t get_full_name(Library& library, int32_t list, uint32_t index,
                      char* buffer, uint32_t size);
int32_t set_full_name(Library& library, int32_t list, uint32_t index,
                      const char* text);
int32_t get_directory(Library& library, int32_t list, uint32_t index,
                      char* buffer, uint32_t size);
int32_t get_type(Library& library, int32_t list, uint32_t index, char* buffer,
                 uint32_t size);
int32_t get_ctime(Library& library, int32_t list, uint32_t index, char* buffer,
                  uint32_t size);
int32_t get_atime(Library& library, int32_t list, uint32_t index, char* buffer,
                  uint32_t size);
int32_t get_mtime(Library& library, int32_t list, uint32_t index, char* buffer,
                  uint32_t size);
int32_t get_size(Library& library, int32_t list, uint32_t index, char* buffer,
                 uint32_t size);
int32_t get_attributes(Library& library, int32_t list, uint32_t index,
                       char* buffer, uint32_t size);
int32_t get_icon(Library& library, int32_t list, uint32_t index,
                 int32_t* image_list, int32_t* icon);
int32_t get_flag(Library& library, int32_t list, uint32_t index);
int32_t is_trashed(Library& library, int32_t list, uint32_t index);
int32_t get_state(Library& library, int32_t list, uint32_t index);
int32_t set_state(Library& library, int32_t list, int32_t index,
                  int32_t action);

int32_t get_find_string(Library& library, uint32_t index, char* buffer,
                        uint32_t size);
int32_t get_replace_string(Library& library, uint32_t index, char* buffer,
                           uint32_t size);
int32_t get_replace_value(Library& library, uint32_t index, char* buffer,
                          uint32_t size);
int32_t get_orig_file(Library& library, uint32_t index, char* buffer,
                      uint32_t size);
int32_t get_safe_file(Library& library, uint32_t index, char* buffer,
                      uint32_t size);
int32_t get_safe_time(Library& library, uint32_t index, char* buffer,
                      uint32_t size);

int32_t get_count(Library& library, int32_t list, int32_t selector);
int32_t get_file_flag_count(Library& library, int32_t list, int32_t value);
int32_t get_size_selection(Library& library, int32_t list, char* short_text,
                           char* long_text);
int32_t get_size_total(Library& library, int32_t list, char* short_text,
                       char* long_text);
int32_t refresh(Library& library, int32_t list, int32_t index,
                const unsigned char* options);
int32_t clear(Library& library, int32_t list);

}  // namespace zenfo
