// Room for the evaluation of special models, kept between calls so that nothing is allocated from frequency to
// frequency: one set for each level of models within models, and what a model's type keeps for it.
#pragma once

#include <any>
#include <array>
#include <cstdint>
#include <deque>
#include <map>
#include <span>
#include <typeindex>
#include <vector>

#include "datasets/quantity.h"
#include "numeric/complex.h"
#include "numeric/dual.h"

namespace kalvex {

struct Model;
struct ModelParam;
struct ParamSlopes;

// Directions in which a pass over a type's formula carries derivatives.
inline constexpr std::size_t kTypeLanes = 8;
using TypeDual = Dual<kTypeLanes>;
inline constexpr auto kNoDirection = static_cast<std::size_t>(-1);

struct TypeScratch {
  std::span<const double> ahead;         // as in the stack
  std::vector<double> raw;               // of each input: the number in its cell
  std::vector<Cplx> at;                  // the response, the number itself, or the value of the dataset
  std::vector<const Model*> partner;     // null where the input is no model
  std::vector<double> partnerX;          // frequency at which the partner is asked
  std::vector<const ModelParam*> param;  // of a number that can be fitted, else null
  std::vector<int> row;                  // in which the input stands
  std::vector<std::size_t> direction;    // the first of the input's directions, kNoDirection if nothing can vary it
  std::vector<PerQuantity<double>> quantities;  // of an evaluated partner
  std::vector<Complex<TypeDual>> dual;
  std::vector<PerQuantity<TypeDual>> dualQuantities;
  std::vector<double> slopes;      // of each Quantity by each direction
  std::vector<Cplx> epsSlopes;     // of a material's dielectric function by each direction
  std::vector<ParamSlopes*> free;  // by every adjustable parameter of the tables
  std::vector<double> columns;     // of evaluated partners: dQuantity of each Quantity by each of these
};

struct TypeScratchStack {
  std::deque<TypeScratch> levels;  // a deque, since an evaluation holds on to its level while deeper ones are added
  std::size_t depth = 0;
  // The frequency at which a spectrum stands and those it comes to next; empty where that is not known.
  std::span<const double> ahead;
  std::map<std::uint32_t, std::any> caches;    // by the model's number
  std::map<std::type_index, std::any> shared;  // by what it is: kept for all models of a type together
};

}  // namespace kalvex
