// The reflectivity of a half-space for light from inside a medium.
#include "types/frame.h"
#include "types/types.h"

namespace kalvex {
namespace {

struct SampleInMedium {
  enum Input { kMedium, kSample, kScale };
  static constexpr RowCell kHead[] = {Partner(0, Wo, "medium"), Partner(0, Wp, "sample"), Own(0, G, "scale", 1)};
  static constexpr SlotUse kFills[] = {{kRefl, "reflectivity"}};

  template <class T>
  static void Fill(const TypeInputs<T>& in, Slots<T>& q) {
    const Complex<T> n1 = Sqrt(in.eps(kMedium)), n2 = Sqrt(in.eps(kSample));
    q[kRefl] = in[kScale] * Norm(Quotient(n2 - n1, n2 + n1));
  }
};

}  // namespace

constinit const ModelType kSampleInMedium = FittedType<SampleInMedium, Exactly(1)>(
    17, "Refl. sample in medium",
    {.sample = "a thick sample measured from inside a medium: through a window, or in a liquid",
     .formula = "R = s |(n2 - n1)/(n2 + n1)|^2, n1 and n2 the indices of the medium and of the sample, s the scale",
     .source = "M. Born, E. Wolf, Principles of Optics, chapter 1.5"});

}  // namespace kalvex
