#include "viewer/png.h"

namespace zenfo::viewer {
namespace {

std::string big_endian(uint32_t number) {
  std::string bytes;
  for (int shift = 24; shift >= 0; shift -= 8) {
    bytes += static_cast<char>(number >> shift);
  }
  return bytes;
}

std::string little_endian_16(uint32_t number) {
  return {static_cast<char>(number), static_cast<char>(number >> 8)};
}

uint32_t crc32(std::string_view bytes) {
  uint32_t crc = 0xFFFFFFFF;
  for (const char c : bytes) {
    crc ^= static_cast<unsigned char>(c);
    for (int bit = 0; bit < 8; ++bit) {
      crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320 : 0);
    }
  }
  return ~crc;
}

uint32_t adler32(std::string_view bytes) {
  uint32_t a = 1;
  uint32_t b = 0;
  for (const char c : bytes) {
    a = (a + static_cast<unsigned char>(c)) % 65521;
    b = (b + a) % 65521;
  }
  return b << 16 | a;
}

std::string chunk(const std::string& type, const std::string& data) {
  const std::string body = type + data;
  return big_endian(static_cast<uint32_t>(data.size())) + body +
         big_endian(crc32(body));
}

// Wraps bytes in a zlib stream of uncompressed blocks.
std::string stored(std::string_view bytes) {
  constexpr size_t kLongestBlock = 0xFFFF;
  std::string stream = "\x78\x01";
  std::string_view rest = bytes;
  do {
    const std::string_view block = rest.substr(0, kLongestBlock);
    rest.remove_prefix(block.size());
    const auto length = static_cast<uint32_t>(block.size());
    stream += rest.empty() ? '\1' : '\0';
    stream += little_endian_16(length) + little_endian_16(~length);
    stream += block;
  } while (!rest.empty());
  return stream + big_endian(adler32(bytes));
}

// Puts the filter byte 0, no filter, before each row.
std::string filtered_rows(uint32_t width, std::string_view pixels) {
  std::string rows;
  for (; !pixels.empty(); pixels.remove_prefix(width * 3)) {
    rows += '\0';
    rows += pixels.substr(0, width * 3);
  }
  return rows;
}

}  // namespace

std::string png_file(uint32_t width, uint32_t height, std::string_view pixels) {
  // 8 bits per sample, RGB, the only compression and filter methods, not
  // interlaced.
  const std::string format("\x08\x02\0\0\0", 5);
  return "\x89PNG\r\n\x1A\n" +
         chunk("IHDR", big_endian(width) + big_endian(height) + format) +
         chunk("IDAT", stored(filtered_rows(width, pixels))) +
         chunk("IEND", "");
}

}  // namespace zenfo::viewer
