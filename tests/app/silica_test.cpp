// The example that finds a dielectric function without a model of its shape, compared with independent tabulated
// values.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

#include "support/run_program.h"

namespace kalvex {
namespace {

using Table = std::vector<std::vector<double>>;

// Root mean square difference of the second columns. Three rows at each end are left out, because a mesh has no
// neighbours there.
double Difference(const Table& a, const Table& b) {
  constexpr std::size_t kEnds = 3;
  double sum = 0;
  for (std::size_t i = kEnds; i + kEnds < a.size(); ++i) sum += std::pow(a[i][1] - b[i][1], 2);
  return std::sqrt(sum / static_cast<double>(a.size() - 2 * kEnds));
}

TEST(SilicaExample, ReflectivityAloneGivesTheTabulatedDielectricFunction) {
  const ScratchFolder folder;
  std::filesystem::copy(ProjectFile("examples/silica"), folder.Name(), std::filesystem::copy_options::recursive);
  const ProgramRun run = RunProgram(folder, {"fit.kvs"});
  ASSERT_EQ(run.status, 0) << run.err;
  // The tables were computed from one published set of n and k (D. Franta et al., 2016), so a perfect transform of a
  // complete spectrum would reproduce them. The mesh ends at 3000 cm-1 and is linear between its points. E2 has a
  // maximum of 7.7.
  const struct {
    const char* quantity;
    double allowed;
  } kJudges[] = {{"R", 1e-4}, {"E1", 0.06}, {"E2", 0.06}};
  for (const auto& judge : kJudges) {
    const std::string quantity = judge.quantity;
    const Table model = NumbersOf(folder.Read("model_" + quantity + ".dat"));
    const Table measured = NumbersOf(folder.Read(quantity + "_sio2.dat"));
    ASSERT_EQ(model.size(), measured.size());
    EXPECT_LT(Difference(model, measured), judge.allowed) << quantity;
  }
}

}  // namespace
}  // namespace kalvex
