#include "graphs/graph_picture.h"

#include "core/files.h"
#include "core/text.h"
#include "graphs/graph_table.h"
#include "graphs/painting.h"
#include "graphs/vector_curves.h"
#include "pictures/pdf.h"
#include "pictures/png.h"
#include "pictures/svg.h"

namespace kalvex {
namespace {

constexpr int kLongestSide = 16000;

std::string PictureOf(Graph& graph, EvalContext& ctx, PictureFormat format) {
  if (format == PictureFormat::kSvg) {
    SvgPicture picture(graph.Width, graph.Height);
    DrawGraphForPaper(graph, ctx, picture);
    return picture.Text();
  }
  if (format == PictureFormat::kPdf) {
    PdfPicture picture(graph.Width, graph.Height);
    DrawGraphForPaper(graph, ctx, picture);
    return picture.Bytes();
  }
  PixelSurface surface(graph.Width, graph.Height, 0xFFFFFF);
  PaintGraph(graph, ctx, surface);
  return PngOf(surface);
}

}  // namespace

std::optional<PictureFormat> PictureFormatOf(const std::string& path) {
  const auto endsIn = [&](std::string_view ending) {
    return path.size() > ending.size() && EqualsIgnoringCase(path.substr(path.size() - ending.size()), ending);
  };
  if (endsIn(".png")) return PictureFormat::kPng;
  if (endsIn(".svg")) return PictureFormat::kSvg;
  if (endsIn(".pdf")) return PictureFormat::kPdf;
  return std::nullopt;
}

bool IsPictureSize(int width, int height) {
  return width >= 1 && width <= kLongestSide && height >= 1 && height <= kLongestSide;
}

Status SaveGraphPicture(const Graph& graph, EvalContext& ctx, PictureFormat format, int width, int height,
                        const std::string& path) {
  Graph drawn = graph;
  drawn.Width = width;
  drawn.Height = height;
  RebuildGraph(drawn);
  return WriteWholeFile(path, PictureOf(drawn, ctx, format));
}

}  // namespace kalvex
