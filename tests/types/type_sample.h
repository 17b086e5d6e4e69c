// A special model with everything that it names: partners, datasets, sensible numbers; one recipe for every type,
// driven by its row map.
#pragma once

#include <random>
#include <string>
#include <vector>

#include "evaluation/model_type.h"
#include "support/tables.h"

namespace kalvex {

class TypeSample {
 public:
  // Numbers spread by 20 % about the typical ones; oscillators at random; settings as the type gives them.
  TypeSample(const ModelType& type, unsigned seed);

  const ModelType& type;
  Tables program;
  Model& model() { return *GetModelByNumber(number_); }
  double x = 0;  // somewhere in the type's range

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
  // Those that the after-step marks for a Quantity.
  std::vector<Free> Marked(Quantity quantity);

 private:
  Model* GetModelByNumber(std::uint32_t number);
  // A model of a type, or with code 0 a plain one; gives its number.
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
