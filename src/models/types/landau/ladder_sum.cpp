#include "models/types/landau/ladder_sum.h"

#include <cstring>

#include "core/vector_clones.h"

namespace kalvex {
namespace {

typedef double Pack __attribute__((vector_size(kTypeLanes * sizeof(double))));

void Load(const TypeDual& from, Pack& to) { std::memcpy(&to, from.v.data(), sizeof(to)); }

// A sum, its derivative by Z^2, and those by what its weights and steps are made of.
struct PackSum {
  Cplx value, bySquare;
  Pack re{}, im{};

  void Add(const TypeDual& weight, const Pack& square, const Cplx& u, const Cplx& u2) {
    Pack own;
    Load(weight, own);
    const Cplx au2 = u2 * weight.a;
    value += u * weight.a;
    bySquare += au2;
    re += own * u.re - square * au2.re;
    im += own * u.im - square * au2.im;
  }
  Complex<TypeDual> At(const Complex<TypeDual>& square) const {
    Complex<TypeDual> sum{value.re, value.im};
    std::memcpy(sum.re.v.data(), &re, sizeof(re));
    std::memcpy(sum.im.v.data(), &im, sizeof(im));
    return sum + Analytic(square, {}, bySquare);
  }
};

KALVEX_VECTOR_CLONES void AddUp(const LadderTable<TypeDual>& table, const Cplx& z2, PackSum* diagonal, PackSum* hall) {
  PackSum ofDiagonal, ofHall;
  const bool hasHall = !table.hall.empty();
  for (std::size_t k = 0; k < table.square.size(); ++k) {
    Pack square;
    Load(table.square[k], square);
    const Cplx u = Cplx{1, 0} / (table.square[k].a - z2), u2 = u * u;
    ofDiagonal.Add(table.diagonal[k], square, u, u2);
    if (hasHall) ofHall.Add(table.hall[k], square, u, u2);
  }
  *diagonal = ofDiagonal;
  *hall = ofHall;
}

}  // namespace

LadderSums<TypeDual> SumLadder(const LadderTable<TypeDual>& table, const Complex<TypeDual>& z) {
  const Complex<TypeDual> square = z * z;
  PackSum diagonal, hall;
  AddUp(table, ValueOf(square), &diagonal, &hall);
  return {diagonal.At(square), hall.At(square)};
}

}  // namespace kalvex
