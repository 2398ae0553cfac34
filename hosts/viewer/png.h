// Pictures as PNG files, stored without compression.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zenfo::viewer {

// The bytes of a file. `pixels` has three bytes for each, red, green and blue,
// row by row from the top.
std::string png_file(uint32_t width, uint32_t height, std::string_view pixels);

}  // namespace zenfo::viewer
