// A program whose notices, messages and file questions are noted, over two models and two datasets.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "datasets/quantity.h"
#include "program/program.h"
#include "records/model_rows.h"
#include "records/model_table.h"

namespace kalvex {

using Texts = std::vector<std::string>;

class OpenWindows : public testing::Test {
 protected:
  OpenWindows() : first(*CreateModel(program.params)), second(*CreateModel(program.params)) {
    program.platform.self = this;
    program.platform.askFile = [](void* self, const FileQuestion& question, const std::string& folder) {
      Of(self).asked.push_back(std::string(question.title) + " in '" + folder + "'");
      return Of(self).chosenFile;
    };
    program.platform.showMessage = [](void* self, std::string_view title, std::string_view text) {
      Of(self).messages.push_back(std::string(title) + ": " + std::string(text));
    };
    program.notices.owner = this;
    program.notices.graphs = [](void* self, GraphEvent event, std::int64_t id) {
      Of(self).heard.push_back(std::to_string(static_cast<int>(event)) + ':' + std::to_string(id));
    };
    program.notices.fit = [](void* self, FitNotice notice, std::uint32_t id) {
      constexpr const char* kNames[] = {"dataset gone", "dataset changed", "model gone",
                                        "model",        "experiment",      "recompute"};
      const bool named = notice == FitNotice::kModelParamsChanged || notice == FitNotice::kExpParamsChanged ||
                         notice == FitNotice::kRecompute;
      Of(self).heard.push_back(std::string("fit: ") + kNames[static_cast<int>(notice)] +
                               (named ? "" : ' ' + std::to_string(id)));
    };
  }

  WindowDesk desk() { return WindowDeskOf(program); }
  // What was heard since the last call.
  Texts Heard() { return std::exchange(heard, {}); }

  // Fills a slot with x = 10, 20 ... and y = 1.
  Dataset& Fill(int slot, const std::string& name, int points = 10) {
    Dataset& dataset = *DatasetInSlot(program.datasets, slot);
    dataset = Dataset{};
    dataset.id = program.datasets.nextId++;
    dataset.name = name;
    for (int i = 1; i <= points; ++i) dataset.points.push_back({10.0 * i, 1, 0.01});
    dataset.CutMin = 10;
    dataset.CutMax = 10.0 * points;
    ComputeActiveRange(dataset);
    return dataset;
  }

  Program program;
  Model& first;
  Model& second;
  Texts asked, messages;
  std::optional<std::string> chosenFile;

 private:
  static OpenWindows& Of(void* self) { return *static_cast<OpenWindows*>(self); }
  Texts heard;
};

}  // namespace kalvex
