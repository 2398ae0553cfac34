// A slow model of replacing: what an engine writes for a text and its marks.
//
// Plain strings and loops, one byte at a time, no header of the engine. The
// engines must write the same as this model.
//
// Tested by tests/unit/model/replace_model_test.cpp
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "model/pattern_model.h"

namespace zenfo::model {

// One match and what to do with it.
struct Mark {
  size_t offset = 0;
  size_t length = 0;
  bool selected = true;
  bool flag = true;
  std::string replacement;  // empty: none
};

// The result of an engine and the bytes of the file; nothing is written when it
// refuses.
struct Rewritten {
  int32_t answer = -1;
  std::string file;
  bool operator==(const Rewritten&) const = default;
};

using Replacement = std::function<std::string(const Mark&)>;

inline std::string up_to_nul(const std::string& text) {
  std::string out;
  for (const char c : text) {
    if (c == '\0') break;
    out += c;
  }
  return out;
}

// Writes all of `text`, with `replacement` in place of, before (mode 1) or
// after (mode 2) each selected mark.
inline Rewritten write_marks(const std::string& text,
                             const std::vector<Mark>& marks, int32_t mode,
                             const Replacement& replacement) {
  Rewritten out{0, ""};
  if (text.empty()) return {};
  size_t next = 0;  // byte to write
  for (const Mark& mark : marks) {
    if (!mark.selected || mark.offset >= text.size()) continue;
    while (next < mark.offset) out.file += text[next++];
    std::string matched;
    size_t at = mark.offset;
    while (at < text.size() && matched.size() < mark.length) {
      matched += text[at++];
    }
    if (mode == 2) out.file += matched;
    out.file += replacement(mark);
    if (mode == 1) out.file += matched;
    if (at > next) next = at;
    ++out.answer;
  }
  while (next < text.size()) out.file += text[next++];
  return out;
}

inline std::string expanded(const std::string& text, bool expand) {
  return expand ? convert_carets(text) : text;
}

inline Rewritten replace_with_text(const std::string& content,
                                   const std::vector<Mark>& marks,
                                   const std::string& text, int32_t mode,
                                   bool expand) {
  const std::string whole = expanded(text, expand);
  return write_marks(up_to_nul(content), marks, mode,
                     [&](const Mark&) { return whole; });
}

inline std::string with_number(const std::string& text,
                               const std::string& placeholder, int32_t number) {
  std::string out;
  for (size_t i = 0; i < text.size();) {
    if (text.compare(i, placeholder.size(), placeholder) == 0) {
      out += std::to_string(number);
      i += placeholder.size();
    } else {
      out += text[i++];
    }
  }
  return out;
}

inline Rewritten replace_with_numbers(const std::string& content,
                                      const std::vector<Mark>& marks,
                                      const std::string& text,
                                      const std::string& placeholder,
                                      int32_t first, int32_t step, int32_t mode,
                                      bool expand) {
  if (text.empty() || placeholder.empty()) return {};
  const std::string whole = expanded(text, expand);
  int64_t number = first;
  return write_marks(up_to_nul(content), marks, mode, [&](const Mark&) {
    const auto wrapped = static_cast<int32_t>(static_cast<uint32_t>(number));
    number += step;
    return with_number(whole, placeholder, wrapped);
  });
}

inline Rewritten replace_with_records(const std::string& content,
                                      const std::vector<Mark>& marks,
                                      int32_t mode) {
  return write_marks(up_to_nul(content), marks, mode,
                     [](const Mark& mark) { return mark.replacement; });
}

inline void leave_without(Mark& mark) { mark.selected = mark.flag = false; }

inline void set_from_list(std::vector<Mark>& marks,
                          const std::vector<std::string>& values, bool expand) {
  for (size_t i = 0; i < marks.size(); ++i) {
    if (i < values.size()) {
      marks[i].replacement = up_to_nul(expanded(values[i], expand));
    } else {
      leave_without(marks[i]);
    }
  }
}

inline void set_from_matches(std::vector<Mark>& marks,
                             const std::vector<std::string>& sources,
                             uint32_t index, bool expand) {
  for (size_t i = 0; i < marks.size(); ++i) {
    const size_t source = index == 0 ? i : size_t{index} - 1;
    if (source < sources.size()) {
      marks[i].replacement = expanded(sources[source], expand);
    } else {
      leave_without(marks[i]);
    }
  }
}

inline Rewritten change_case(const std::string& content,
                             const std::vector<Mark>& marks, bool upper) {
  return write_marks(content, marks, 0, [&](const Mark& mark) {
    std::string out = content.substr(mark.offset, mark.length);
    for (char& c : out) {
      if (c == '\0') break;
      if (upper && 'a' <= c && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
      if (!upper && 'A' <= c && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return out;
  });
}

}  // namespace zenfo::model
