// Pictures as PNG files, stored without compression.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zenfo::viewer {

// The bytes of a PNG file. `pixels` contains red, green and blue bytes, row by
// row from the top.
std::string png_file(uint32_t width, uint32_t height, std::string_view pixels);

}  // namespace zenfo::viewer
