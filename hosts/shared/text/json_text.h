// Texts in JSON, whatever their bytes. Written by hand for speed, because there
// may be millions.
//
// Tested by tests/hosts/shared/json_text_test.cpp
#pragma once

#include <string>
#include <string_view>

namespace zenfo::host {

// "..." or, for bytes that are not UTF-8, {"bytes":"..."} in base64, so that
// different texts never look the same.
std::string json_text(std::string_view bytes);
// The same with UTF-8 as {"text":"..."}.
std::string json_bytes(std::string_view bytes);
bool is_utf8(std::string_view bytes);
std::string base64(std::string_view bytes);

}  // namespace zenfo::host
