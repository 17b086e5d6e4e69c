// Picture files read by independent programs.
#pragma once

#include <gtest/gtest.h>
#include <png.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "support/scratch_folder.h"

namespace kalvex {

struct DecodedPicture {
  int width = 0, height = 0;
  std::vector<std::uint32_t> pixels;
  std::uint32_t At(int x, int y) const { return pixels.at(static_cast<std::size_t>(y * width + x)); }
};

// A PNG file, decoded by the reference library.
inline DecodedPicture DecodePng(const std::string& bytes) {
  png_image image;
  std::memset(&image, 0, sizeof image);
  image.version = PNG_IMAGE_VERSION;
  DecodedPicture picture;
  if (!png_image_begin_read_from_memory(&image, bytes.data(), bytes.size())) {
    ADD_FAILURE() << image.message;
    return picture;
  }
  image.format = PNG_FORMAT_RGB;
  std::vector<std::uint8_t> rgb(PNG_IMAGE_SIZE(image));
  const png_color white{255, 255, 255};
  if (!png_image_finish_read(&image, &white, rgb.data(), 0, nullptr)) ADD_FAILURE() << image.message;
  picture.width = static_cast<int>(image.width);
  picture.height = static_cast<int>(image.height);
  for (std::size_t i = 0; i + 2 < rgb.size(); i += 3) {
    picture.pixels.push_back(static_cast<std::uint32_t>(rgb[i] << 16 | rgb[i + 1] << 8 | rgb[i + 2]));
  }
  return picture;
}

// The standard output of a command.
inline std::string OutputOf(const std::string& command) {
  std::string output;
  std::FILE* const pipe = popen(command.c_str(), "r");
  std::array<char, 65536> block;
  for (std::size_t n; pipe && (n = std::fread(block.data(), 1, block.size(), pipe)) > 0;)
    output.append(block.data(), n);
  EXPECT_EQ(pipe ? pclose(pipe) : -1, 0) << command;
  return output;
}

// An SVG or PDF file, drawn by a viewer with one pixel for each pixel of the picture.
inline DecodedPicture DrawSvg(const ScratchFolder& folder, const std::string& svg) {
  folder.Write("picture.svg", svg);
  return DecodePng(OutputOf("rsvg-convert '" + folder.Path("picture.svg") + "'"));
}
inline DecodedPicture DrawPdf(const ScratchFolder& folder, const std::string& pdf) {
  folder.Write("picture.pdf", pdf);
  return DecodePng(OutputOf("pdftoppm -r 96 -png -singlefile '" + folder.Path("picture.pdf") + "'"));
}
inline std::string TextOfPdf(const ScratchFolder& folder, const std::string& pdf) {
  folder.Write("picture.pdf", pdf);
  return OutputOf("pdftotext '" + folder.Path("picture.pdf") + "' -");
}

}  // namespace kalvex
