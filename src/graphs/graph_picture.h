// Writes a graph as a picture file.
#pragma once

#include <optional>
#include <string>

#include "core/status.h"
#include "evaluation/eval_context.h"
#include "graphs/graph.h"

namespace kalvex {

enum class PictureFormat { kPng, kSvg, kPdf };

// The format that belongs to the extension of the file name, in any case. Nothing if the extension is unknown.
std::optional<PictureFormat> PictureFormatOf(const std::string& path);

// 1 to 16000 pixels along each side.
bool IsPictureSize(int width, int height);

// Draws the graph as in a window of that size, with its present curves. PNG shows the pixels of the window. SVG and PDF
// contain lines and symbols, with black axes on a white ground.
Status SaveGraphPicture(const Graph& graph, EvalContext& ctx, PictureFormat format, int width, int height,
                        const std::string& path);

}  // namespace kalvex
