// A desk with two models and two datasets, whose session has an open fit. It records the notifications of the session,
// the messages to the user and the requested files.
#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "datasets/quantity.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "support/ears.h"
#include "support/open_session.h"

namespace kalvex {

using Texts = std::vector<std::string>;

class OpenWindows : public testing::Test, protected OpenDesk {
 protected:
  OpenWindows() : first(Made(session.NewModel())), second(Made(session.NewModel())), ears(session) {
    platform.file = [this](const FileQuestion& question, const std::string& in) {
      asked.push_back(std::string(question.title) + " in '" + in + "'");
      return chosenFile;
    };
    session.OpenFit().Ignore();
    Heard();
  }

  Model& Made(const Result<std::uint32_t>& number) { return *GetModelByNumber(params, *number); }
  // The notifications since the last call.
  Texts Heard() { return std::exchange(ears.heard, {}); }
  // Whether a graph must be repainted. Each call resets this; the first call makes the graph.
  bool GraphsHeard() {
    if (graphs.slots[0].number == 0) session.NewGraph().GetStatus().Ignore();
    return std::exchange(graphs.slots[0].repaint, Repaint::kNothing) != Repaint::kNothing;
  }

  // Fills a slot with x = 10, 20 ... and y = 1.
  Dataset& Fill(int slot, const std::string& name, int points = 10) {
    Dataset& dataset = *DatasetInSlot(datasets, slot);
    dataset = Dataset{};
    dataset.id = datasets.nextId++;
    dataset.name = name;
    for (int i = 1; i <= points; ++i) dataset.points.push_back({10.0 * i, 1, 0.01});
    dataset.CutMin = 10;
    dataset.CutMax = 10.0 * points;
    ComputeActiveRange(dataset);
    return dataset;
  }

  Model& first;
  Model& second;
  Texts asked;
  Texts& messages = platform.messages;
  std::optional<std::string> chosenFile;

 private:
  Ears ears;
};

}  // namespace kalvex
