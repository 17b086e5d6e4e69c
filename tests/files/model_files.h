// The parts of a model file as bytes, and a folder with a model to save.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "files/bytes_of.h"
#include "files/model_file.h"
#include "records/model_rows.h"
#include "records/model_table.h"
#include "support/scratch_folder.h"
#include "support/tables.h"

namespace kalvex {

// A record of 218 bytes; slope fills all derivatives.
inline std::string Record(double value, double error, std::uint32_t free, double min, double max, std::string name,
                          double slope = 0) {
  name.resize(50, '\0');
  std::string bytes = Bytes(value) + Bytes(error) + Bytes(free) + Bytes(min) + Bytes(max) + name;
  for (int i = 0; i < 16; ++i) bytes += Bytes(slope);
  return bytes + Bytes(std::uint32_t{0});
}

// The limits of an element, 12 bytes.
inline std::string Limits(std::uint32_t useMin, std::uint32_t useMax, std::uint32_t coupling) {
  return Bytes(useMin) + Bytes(useMax) + Bytes(coupling);
}

class ModelFiles : public testing::Test {
 protected:
  ModelFiles() : model(*CreateModel(tables.params)) {}
  void Save(const std::string& name) { ASSERT_TRUE(SaveModel(tables.eval, model, 12.5, folder.Path(name)).Ok()); }
  ScratchFolder folder;
  Tables tables;
  Model& model;
};

}  // namespace kalvex
