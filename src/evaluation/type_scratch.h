// Work space for the evaluation of special models, kept between calls to avoid allocations: one set for each level of
// nested models, and the cache of a model's type.
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

// Number of directions of the dual numbers in one pass over a type's formula.
inline constexpr std::size_t kTypeLanes = 8;
using TypeDual = Dual<kTypeLanes>;
inline constexpr auto kNoDirection = ~std::size_t{0};

struct TypeScratch {
  std::span<const double> ahead;                // as in the stack
  std::vector<double> raw;                      // of each input: the number in its cell
  std::vector<Cplx> at;                         // the response, the number itself, or the value of the dataset
  std::vector<const Model*> partner;            // null if the input is not a model
  std::vector<double> partnerX;                 // frequency at which the partner is evaluated
  std::vector<const ModelParam*> param;         // null unless the fit can vary the number
  std::vector<int> row;                         // the row of the input
  std::vector<std::size_t> direction;           // the first direction of the input, kNoDirection if it has none
  std::vector<PerQuantity<double>> quantities;  // of an evaluated partner
  std::vector<Complex<TypeDual>> dual;
  std::vector<PerQuantity<TypeDual>> dualQuantities;
  std::vector<double> slopes;      // of each Quantity, by each direction
  std::vector<Cplx> epsSlopes;     // of a material's dielectric function, by each direction
  std::vector<ParamSlopes*> free;  // of every adjustable parameter of the tables
  std::vector<double> columns;     // of evaluated partners: dQuantity of each Quantity, by each entry of free
};

struct TypeScratchStack {
  std::deque<TypeScratch> levels;  // a deque: references to a level stay valid while deeper ones are added
  std::size_t depth = 0;
  // The present frequency of a spectrum and the following ones; empty if they are not known.
  std::span<const double> ahead;
  std::map<std::uint32_t, std::any> caches;    // keyed by the model's number
  std::map<std::type_index, std::any> shared;  // keyed by the type of the content, common to all models
};

}  // namespace kalvex
