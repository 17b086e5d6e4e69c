// Eight doubles that go through a formula together. The operators and the square roots give the same bits as for
// double. The other functions agree with those for double to a few units in the last place. The compiler maps packs to
// vector registers only in the sources that are compiled for each width of the vector units: see core/vector_width.h.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <numbers>

#include "numeric/complex.h"

namespace kalvex {

inline constexpr std::size_t kPack = 8;

// Number of doubles in a register of the machine.
#if defined(__AVX512F__)
constexpr std::size_t kRegister = 8;
#elif defined(__AVX2__)
constexpr std::size_t kRegister = 4;
#else
constexpr std::size_t kRegister = 2;
#endif

// The alignment is the same for every width of the vector units: code for one width can pass packs to code for another.
struct alignas(kPack * sizeof(double)) PackMask {
  typedef std::int64_t Bits __attribute__((vector_size(kPack * sizeof(std::int64_t))));
  Bits bits;  // all bits of a lane are 1 or 0
};

struct alignas(kPack * sizeof(double)) Pack {
  typedef double Numbers __attribute__((vector_size(kPack * sizeof(double))));
  Numbers x{};

  Pack() = default;
  Pack(double all) : x{all, all, all, all, all, all, all, all} {}  // NOLINT(google-explicit-constructor): as for duals
  explicit Pack(const Numbers& numbers) : x(numbers) {}

  static Pack Load(const double* from) {
    Numbers numbers;
    std::memcpy(&numbers, from, sizeof(numbers));
    return Pack(numbers);
  }
  void Store(double* to) const { std::memcpy(to, &x, sizeof(x)); }

  Pack& operator+=(const Pack& b) { return *this = *this + b; }
  Pack& operator-=(const Pack& b) { return *this = *this - b; }
  Pack& operator*=(const Pack& b) { return *this = *this * b; }

  friend Pack operator-(const Pack& a) { return Pack(-a.x); }
  friend Pack operator+(const Pack& a, const Pack& b) { return Pack(a.x + b.x); }
  friend Pack operator-(const Pack& a, const Pack& b) { return Pack(a.x - b.x); }
  friend Pack operator*(const Pack& a, const Pack& b) { return Pack(a.x * b.x); }
  friend Pack operator/(const Pack& a, const Pack& b) { return Pack(a.x / b.x); }
  // By registers: the compiler would take a comparison of more than one register apart into single lanes.
  template <class Comparison>
  static PackMask Compare(const Pack& a, const Pack& b, Comparison comparison) {
    typedef double Part __attribute__((vector_size(kRegister * sizeof(double))));
    PackMask mask;
    for (std::size_t i = 0; i < kPack; i += kRegister) {
      Part u, v;
      std::memcpy(&u, reinterpret_cast<const double*>(&a.x) + i, sizeof(Part));
      std::memcpy(&v, reinterpret_cast<const double*>(&b.x) + i, sizeof(Part));
      const auto bits = comparison(u, v);
      std::memcpy(reinterpret_cast<std::int64_t*>(&mask.bits) + i, &bits, sizeof(Part));
    }
    return mask;
  }
  friend PackMask operator<(const Pack& a, const Pack& b) {
    return Compare(a, b, [](const auto& u, const auto& v) { return u < v; });
  }
  friend PackMask operator>(const Pack& a, const Pack& b) {
    return Compare(a, b, [](const auto& u, const auto& v) { return u > v; });
  }
  friend PackMask operator>=(const Pack& a, const Pack& b) {
    return Compare(a, b, [](const auto& u, const auto& v) { return u >= v; });
  }
  friend PackMask operator==(const Pack& a, const Pack& b) {
    return Compare(a, b, [](const auto& u, const auto& v) { return u == v; });
  }
};

inline PackMask operator|(const PackMask& a, const PackMask& b) { return {a.bits | b.bits}; }
inline PackMask operator&(const PackMask& a, const PackMask& b) { return {a.bits & b.bits}; }

// A lane for which the mask holds is -1 as an integer. The halves are added until one lane holds the sum.
inline Lanes LanesOf(const PackMask& mask) {
  const PackMask::Bits fours = mask.bits + __builtin_shufflevector(mask.bits, mask.bits, 4, 5, 6, 7, 0, 1, 2, 3);
  const PackMask::Bits pairs = fours + __builtin_shufflevector(fours, fours, 2, 3, 0, 1, 6, 7, 4, 5);
  const std::int64_t sum = pairs[0] + pairs[1];
  return sum == 0 ? Lanes::kNone : sum == -static_cast<std::int64_t>(kPack) ? Lanes::kAll : Lanes::kSome;
}

inline Pack Select(const PackMask& condition, const Pack& yes, const Pack& no) {
  const auto chosen = (reinterpret_cast<PackMask::Bits>(yes.x) & condition.bits) |
                      (reinterpret_cast<PackMask::Bits>(no.x) & ~condition.bits);
  return Pack(reinterpret_cast<Pack::Numbers>(chosen));
}

// Applies a function of double to each lane.
template <class Function>
Pack InEachLane(const Pack& a, Function function) {
  Pack out;
  for (std::size_t i = 0; i < kPack; ++i) out.x[i] = function(a.x[i]);
  return out;
}

inline Pack Sqrt(const Pack& a) {
  return InEachLane(a, [](double x) { return std::sqrt(std::fabs(x)); });
}
inline Pack Fabs(const Pack& a) {
  return InEachLane(a, [](double x) { return std::fabs(x); });
}
inline Pack Hypot(const Pack& a, const Pack& b) {
  Pack out;
  for (std::size_t i = 0; i < kPack; ++i) out.x[i] = std::hypot(a.x[i], b.x[i]);
  return out;
}

// The whole number nearest to a, |a| below 2^51, as a double and as an integer. A double near 1.5*2^52 has no
// fractional part: adding and subtracting that constant rounds a.
struct NearestWhole {
  Pack number;
  PackMask::Bits bits;
};
inline NearestWhole NearestWholeOf(const Pack& a) {
  const Pack shift(6755399441055744.0), shifted = a + shift;
  return {shifted - shift, reinterpret_cast<PackMask::Bits>(shifted.x) - reinterpret_cast<PackMask::Bits>(shift.x)};
}

// Sum of c[k] x^k.
template <std::size_t N>
Pack Polynomial(const double (&c)[N], const Pack& x) {
  Pack sum = c[N - 1];
  for (std::size_t k = N - 1; k-- > 0;) sum = sum * x + c[k];
  return sum;
}

// exp(x) = 2^k exp(r), |r| <= ln(2)/2. Within 2 ulp.
inline Pack Exp(const Pack& x) {
  constexpr double kLn2Head = 0.6931471805598903, kLn2Tail = 5.497923018708371e-14;  // 42 bits, and the rest
  // 1/n!, up to the n for which 0.35^n/n! is below one unit in the last place
  constexpr double kTaylor[] = {
      1,          1,           1.0 / 2,      1.0 / 6,       1.0 / 24,       1.0 / 120,       1.0 / 720,
      1.0 / 5040, 1.0 / 40320, 1.0 / 362880, 1.0 / 3628800, 1.0 / 39916800, 1.0 / 479001600, 1.0 / 6227020800};
  const Pack low = Select(x < -746.0, -746.0, x), held = Select(low > 710.0, 710.0, low);  // exp gives 0 or inf outside
  const NearestWhole k = NearestWholeOf(held * std::numbers::log2e);
  const Pack r = (held - k.number * kLn2Head) - k.number * kLn2Tail;
  const auto twoTo = [](const PackMask::Bits& n) { return Pack(reinterpret_cast<Pack::Numbers>((n + 1023) << 52)); };
  // Two factors, because 2^k may be outside the range of a double.
  const PackMask::Bits half = k.bits >> 1;
  return Polynomial(kTaylor, r) * twoTo(half) * twoTo(k.bits - half);
}

struct SineAndCosine {
  Pack sine;
  Pack cosine;
};

// x = k pi/2 + r, |r| <= pi/4. Within 2 ulp; an absolute error near the zeros far from the origin. Large arguments go
// to the scalar functions.
inline SineAndCosine SineAndCosineOf(const Pack& x) {
  constexpr double kMost = 1e6;  // with larger k the first two products would no longer be exact
  if (LanesOf(Fabs(x) < kMost) != Lanes::kAll) {
    return {InEachLane(x, [](double a) { return std::sin(a); }), InEachLane(x, [](double a) { return std::cos(a); })};
  }
  constexpr double kHead = 1.5707963267341256, kMiddle = 6.077100506303966e-11, kTail = 2.0222662487959506e-21;
  constexpr double kSine[] = {1,
                              -1.0 / 6,
                              1.0 / 120,
                              -1.0 / 5040,
                              1.0 / 362880,
                              -1.0 / 39916800,
                              1.0 / 6227020800,
                              -1.0 / 1307674368000,
                              1.0 / 355687428096000};
  constexpr double kCosine[] = {1,
                                -1.0 / 2,
                                1.0 / 24,
                                -1.0 / 720,
                                1.0 / 40320,
                                -1.0 / 3628800,
                                1.0 / 479001600,
                                -1.0 / 87178291200,
                                1.0 / 20922789888000};
  const NearestWhole k = NearestWholeOf(x * (2 * std::numbers::inv_pi));
  const Pack r = ((x - k.number * kHead) - k.number * kMiddle) - k.number * kTail, r2 = r * r;
  const Pack sine = r * Polynomial(kSine, r2), cosine = Polynomial(kCosine, r2);
  const PackMask odd{(k.bits & 1) != 0}, sineFalls{(k.bits & 2) != 0}, cosineFalls{((k.bits + 1) & 2) != 0};
  const Pack s = Select(odd, cosine, sine), c = Select(odd, sine, cosine);
  return {Select(sineFalls, -s, s), Select(cosineFalls, -c, c)};
}

inline Complex<Pack> Sqrt(const Complex<Pack>& z) { return PrincipalRoot(z); }

inline Complex<Pack> Exp(const Complex<Pack>& z) {
  const Pack e = Exp(z.re);
  const SineAndCosine angle = SineAndCosineOf(z.im);
  return {e * angle.cosine, e * angle.sine};
}

}  // namespace kalvex
