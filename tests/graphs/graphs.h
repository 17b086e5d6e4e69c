// Tables with graphs, and a canvas of pixels that records what is painted on it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "graphs/graph_table.h"
#include "pictures/canvas.h"
#include "records/model_table.h"
#include "support/tables.h"

namespace kalvex {

struct Sheet : public Canvas {
  int width, height;
  std::vector<std::uint32_t> pixels;
  std::vector<std::string> texts;
  double clip[4];

  Sheet(int w, int h) : width(w), height(h), pixels(static_cast<std::size_t>(w * h), 0x123456) { Sheet::Unclip(); }

  std::uint32_t At(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }

  void DrawText(Point, TextPlace, const Font&, std::uint32_t, std::string_view text) override {
    texts.emplace_back(text);
  }
  void DrawPolyline(std::span<const Point>, const Pen&) override { ADD_FAILURE() << "a screen has strokes only"; }
  void DrawPolygon(std::span<const Point>, std::optional<std::uint32_t>, const std::optional<Pen>&) override {
    ADD_FAILURE() << "a screen has strokes only";
  }
  void FillRectangle(double left, double top, double right, double bottom, std::uint32_t color) override {
    for (int y = static_cast<int>(std::max(top, clip[1])); y < std::min(bottom, clip[3]); ++y) {
      for (int x = static_cast<int>(std::max(left, clip[0])); x < std::min(right, clip[2]); ++x) {
        pixels[static_cast<std::size_t>(y * width + x)] = color;
      }
    }
  }
  void Clip(double left, double top, double right, double bottom) override {
    clip[0] = left;
    clip[1] = top;
    clip[2] = right;
    clip[3] = bottom;
  }
  void Unclip() override { Sheet::Clip(0, 0, width, height); }
};

class Graphs : public testing::Test {
 protected:
  Graph& NewGraph() { return *CreateGraph(tables.graphs); }
  Model& NewModel() { return *CreateModel(tables.params); }
  Dataset& Load(int slot, std::vector<DataRow> rows, Quantity quantity = kRefl) {
    Dataset& dataset = tables.datasets.slots[static_cast<std::size_t>(slot - 1)];
    dataset = Dataset();
    dataset.id = tables.datasets.nextId++;
    dataset.name = "data" + std::to_string(slot);
    dataset.Quantity = quantity;
    dataset.points = std::move(rows);
    dataset.CutMin = dataset.points.front().x;
    dataset.CutMax = dataset.points.back().x;
    ComputeActiveRange(dataset);
    return dataset;
  }
  void Tell(GraphEvent event, std::int64_t id) { AnswerGraphEvent(tables.graphs, event, id, autoScreenUpdate); }

  // Sets the axes and makes the window so large that the plot has that many pixels.
  static void SetPlot(Graph& graph, double xMin, double xMax, double yMin, double yMax, int width, int height) {
    graph.X.min = xMin;
    graph.X.max = xMax;
    graph.Y.min = yMin;
    graph.Y.max = yMax;
    ApplyAxes(graph);
    // Another size may change the ticks and the width of their labels.
    for (int k = 0; k < 5; ++k) {
      graph.Width += width - graph.plotWidth;
      graph.Height += height - graph.plotHeight;
      RebuildGraph(graph);
    }
    ASSERT_EQ(graph.plotWidth, width);
    ASSERT_EQ(graph.plotHeight, height);
  }

  Tables tables;
  bool autoScreenUpdate = true;
};

}  // namespace kalvex
