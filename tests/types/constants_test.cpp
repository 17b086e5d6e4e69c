// Constants of the formulas against those of nature: e, hbar, c and k as defined in 2019, m, Z0 and alpha as CODATA
// recommended them in 2018. Formulas hold some of theirs with three or four digits, as their sources do.
#include <gtest/gtest.h>

#include <numbers>

#include "support/tolerances.h"
#include "terms/units.h"
#include "types/landau/ladder_sum.h"
#include "types/magneto/circular.h"
#include "types/near_field/sheet_on_surface.h"

namespace kalvex {
namespace {

constexpr double kCharge = 1.602176634e-19, kReducedPlanck = 1.054571817e-34, kLight = 2.99792458e8;
constexpr double kBoltzmann = 1.380649e-23, kImpedance = 376.730313668, kFineStructure = 7.2973525693e-3;
constexpr double kOfWavenumber = 2 * std::numbers::pi * kReducedPlanck * kLight * 100;  // J

constexpr double kThreeDigits = 1e-3, kFourDigits = 1e-4;

TEST(Constants, OfEnergiesAreThoseOfNature) {
  EXPECT_CLOSE(kElectronvoltPerWavenumber, kOfWavenumber / kCharge, kFourDigits);
  EXPECT_CLOSE(kElectronvoltPerKelvin, kBoltzmann / kCharge, kSixDigits);
  EXPECT_CLOSE(kWavenumberPerKelvin, kBoltzmann / kOfWavenumber, kFourDigits);
  EXPECT_CLOSE(kLadderScale, 2 * kReducedPlanck / kCharge, kThreeDigits);  // 2 hbar e in eV^2 s^2/(m^2 T)
}

TEST(Constants, OfSheetsAreThoseOfNature) {
  constexpr double kLayer = 3.35e-8;  // cm
  EXPECT_CLOSE(kLadderConductivity, 8 * kCharge * kCharge / (4 * kReducedPlanck) / kLayer, kFiveDigits);
  EXPECT_CLOSE(kSheetOfLayer, kImpedance * kLayer, kFiveDigits);
  EXPECT_CLOSE(kUniversalSheet, std::numbers::pi * kFineStructure, kFiveDigits);
}

}  // namespace
}  // namespace kalvex
