// A graph as a picture in a file.
#pragma once

#include <optional>
#include <string>

#include "core/status.h"
#include "evaluation/eval_context.h"
#include "graphs/graph.h"

namespace kalvex {

enum class PictureFormat { kPng, kSvg, kPdf };

// By the ending of the file's name, in capitals or not.
std::optional<PictureFormat> PictureFormatOf(const std::string& path);

// 1 to 16000 pixels along each side.
bool IsPictureSize(int width, int height);

// Draws the graph as it would be in a window of that size, with its curves as they are now. PNG shows the pixels of the
// window; SVG and PDF have lines and symbols as such, black axes on white ground.
Status SaveGraphPicture(const Graph& graph, EvalContext& ctx, PictureFormat format, int width, int height,
                        const std::string& path);

}  // namespace kalvex
