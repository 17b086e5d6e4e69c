// A special model with partners, datasets and sensible numbers. The row map of the type says what it needs.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "evaluation/model_type.h"
#include "support/tables.h"

namespace kalvex {

class TypeSample {
 public:
  // Numbers differ by up to 20 % from the typical ones, oscillators are random, settings are the typical ones.
  TypeSample(const ModelType& type, unsigned seed);

  const ModelType& type;
  Tables program;
  Model& model() { return *GetModelByNumber(number_); }
  double x = 0;  // within the type's range

  // One Quantity of the model at x; NaN if the evaluation fails.
  double Value(Quantity quantity, double at);
  // Runs the evaluation with derivatives for one Quantity.
  int Differentiate(Quantity quantity);
  // The Quantities that the type fills, all of them for a material.
  std::vector<Quantity> Filled() const;

  // Every adjustable parameter of every model, and of the experimental block, with a name for messages.
  struct Free {
    ModelParam* param;
    std::string name;
  };
  std::vector<Free> FreeParams();
  // The parameters that the after-step marks for a Quantity.
  std::vector<Free> Marked(Quantity quantity);

 private:
  Model* GetModelByNumber(std::uint32_t number);
  // Makes a model of a type, or a plain one for code 0. Returns its number.
  std::uint32_t MakeModel(int code);
  std::uint32_t MakePlain();
  void AddMesh(Model& model);
  void LoadData(int slot);
  void Set(Model& model, const RowCell& cell, int row);
  double Near(double typical);

  std::mt19937 random_;
  std::uint32_t number_ = 0;
  int datasets_ = 0;
};

}  // namespace kalvex
