#include "pictures/png.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "pictures/deflate.h"

namespace kalvex {
namespace {

void AppendBig32(std::string& out, std::uint32_t value) {
  for (const int shift : {24, 16, 8, 0}) out.push_back(static_cast<char>(value >> shift));
}

void AppendColour(std::string& out, std::uint32_t colour) {
  for (const int shift : {16, 8, 0}) out.push_back(static_cast<char>(colour >> shift));
}

constexpr std::array<std::uint32_t, 256> MakeCrcTable() {
  std::array<std::uint32_t, 256> table{};
  for (std::uint32_t i = 0; i < 256; ++i) {
    std::uint32_t rest = i;
    for (int bit = 0; bit < 8; ++bit) rest = (rest & 1) != 0 ? 0xEDB88320u ^ rest >> 1 : rest >> 1;
    table[i] = rest;
  }
  return table;
}
constexpr std::array<std::uint32_t, 256> kCrcTable = MakeCrcTable();

std::uint32_t Crc32(std::string_view bytes) {
  std::uint32_t rest = 0xFFFFFFFF;
  for (const char byte : bytes) rest = kCrcTable[(rest ^ static_cast<unsigned char>(byte)) & 0xFF] ^ rest >> 8;
  return ~rest;
}

void AppendChunk(std::string& png, std::string_view name, std::string_view content) {
  AppendBig32(png, static_cast<std::uint32_t>(content.size()));
  const std::size_t start = png.size();
  png.append(name).append(content);
  AppendBig32(png, Crc32(std::string_view(png).substr(start)));
}

// The colours in ascending order; nothing if there are more than 256.
std::optional<std::vector<std::uint32_t>> PaletteOf(const PixelSurface& surface) {
  std::vector<std::uint32_t> palette;
  std::uint32_t known = ~std::uint32_t{0};  // neighbours are mostly alike
  for (const std::uint32_t pixel : surface.pixels) {
    if (pixel == known) continue;
    known = pixel;
    const auto place = std::lower_bound(palette.begin(), palette.end(), pixel);
    if (place != palette.end() && *place == pixel) continue;
    if (palette.size() == 256) return std::nullopt;
    palette.insert(place, pixel);
  }
  return palette;
}

// The rows, each after a filter byte 0, which means that the bytes are not filtered.
template <class AppendPixel>
std::string RowsOf(const PixelSurface& surface, AppendPixel appendPixel) {
  std::string rows;
  const auto width = static_cast<std::size_t>(surface.width);
  for (std::size_t i = 0; i < surface.pixels.size(); ++i) {
    if (i % width == 0) rows.push_back(0);
    appendPixel(rows, surface.pixels[i]);
  }
  return rows;
}

}  // namespace

std::string PngOf(const PixelSurface& surface) {
  if (surface.pixels.empty()) return PngOf(PixelSurface(1, 1, 0xFFFFFF));
  constexpr char kPaletteColours = 3, kTrueColours = 2;
  const std::optional<std::vector<std::uint32_t>> palette = PaletteOf(surface);
  std::string png = "\x89PNG\r\n\x1A\n";
  std::string header;
  AppendBig32(header, static_cast<std::uint32_t>(surface.width));
  AppendBig32(header, static_cast<std::uint32_t>(surface.height));
  header.append({8, palette ? kPaletteColours : kTrueColours, 0, 0, 0});
  AppendChunk(png, "IHDR", header);
  if (palette) {
    std::string colours;
    for (const std::uint32_t colour : *palette) AppendColour(colours, colour);
    AppendChunk(png, "PLTE", colours);
    AppendChunk(png, "IDAT", ZlibOf(RowsOf(surface, [&](std::string& rows, std::uint32_t pixel) {
                  const auto place = std::lower_bound(palette->begin(), palette->end(), pixel);
                  rows.push_back(static_cast<char>(place - palette->begin()));
                })));
  } else {
    AppendChunk(png, "IDAT", ZlibOf(RowsOf(surface, AppendColour)));
  }
  AppendChunk(png, "IEND", {});
  return png;
}

}  // namespace kalvex
