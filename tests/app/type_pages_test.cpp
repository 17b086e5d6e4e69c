// The pages of the special models agree with the program, and the macro on each page works.
#include <algorithm>
#include <cmath>
#include <filesystem>
#include <sstream>

#include "app/kalvex_run.h"
#include "core/files.h"
#include "core/text.h"
#include "datasets/quantity.h"
#include "files/vdf_file.h"
#include "support/quantities.h"
#include "types/describe.h"
#include "types/types.h"

namespace kalvex {
namespace {

std::string PageFile(const std::string& name) { return ProjectFile("docs/model-types/" + name + ".md"); }

std::vector<const ModelType*> Computed() {
  std::vector<const ModelType*> types;
  for (const ModelType* const type : ModelTypeTable) {
    if (*type->page.sample) types.push_back(type);
  }
  return types;
}

TEST(TypePages, AreThoseOfTheProgramAndNoneIsMissingOrOld) {
  std::size_t pages = 0;
  for (const auto& entry : std::filesystem::directory_iterator(ProjectFile("docs/model-types"))) {
    static_cast<void>(entry);
    ++pages;
  }
  EXPECT_EQ(pages, Computed().size() + 1);
  std::string text;
  ASSERT_TRUE(ReadWholeFile(PageFile("README"), text));
  EXPECT_EQ(text, IndexOfTypes()) << "run scripts/docs";
  for (const ModelType* const type : Computed()) {
    ASSERT_TRUE(ReadWholeFile(PageFile(std::to_string(type->code)), text)) << type->code << ": run scripts/docs";
    EXPECT_EQ(text, PageOf(*type)) << type->code << ": run scripts/docs";
  }
}

class TypePageMacros : public Kalvex, public testing::WithParamInterface<const ModelType*> {
 protected:
  // The code block of the page under the heading "Macro".
  static std::string MacroOf(const std::string& page) {
    const std::size_t heading = page.find("## Macro"), start = page.find("```\n", heading) + 4;
    return page.substr(start, page.find("```", start) - start);
  }
  void WriteWhatItNames(const ModelType& type) {
    std::string data;
    for (int i = 0; i <= 100; ++i) {
      const double x = type.page.from + (type.page.to - type.page.from) * i / 100;
      data += TextG(x) + ' ' + TextG(0.5 + 0.3 * std::sin(0.2 * i)) + '\n';
    }
    for (const char number : {'1', '2', '3', '4'}) folder.Write(std::string("data") + number + ".dat", data);
    VarDielFunc vdf;
    vdf.On = true;
    for (const double x : {50.0, 100.0, 200.0}) vdf.mesh.push_back({x, {}, {}});
    vdf.mesh[1].e2.value = 0.4;
    ASSERT_TRUE(SaveVdf(vdf, folder.Path("mesh.kvv")).Ok());
  }
};

INSTANTIATE_TEST_SUITE_P(Table, TypePageMacros, testing::ValuesIn(Computed()),
                         [](const auto& of) { return "Code" + std::to_string(of.param->code); });

TEST_P(TypePageMacros, SetUpAModelThatComputes) {
  const ModelType& type = *GetParam();
  const std::string macro = MacroOf(PageOf(type));
  WriteWhatItNames(type);
  int models = 0;
  for (std::size_t at = macro.find("NewModel();"); at != std::string::npos; at = macro.find("NewModel();", at + 1)) {
    ++models;
  }
  std::vector<Quantity> quantities;
  for (const SlotUse& slot : type.fills) quantities.push_back(slot.quantity);
  if (type.material) quantities = {kRefl};
  std::string exports;
  for (const Quantity q : quantities) {
    exports += "ExportModelCurve(ModelNo=" + std::to_string(models) + ",Quantity=\"" + NamesOf(q).shortName +
               "\",XMin=" + TextG(type.page.from) + ",XMax=" + TextG(type.page.to) + ",XPts=7,File=\"q" +
               std::to_string(NumberOf(q)) + "\");\n";
  }
  Run(macro + exports);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.err.find("nothing done"), std::string::npos) << run.err;
  EXPECT_EQ(run.err.find("not used"), std::string::npos) << run.err;
  EXPECT_NE(run.err.find(std::string("(") + type.name + ")"), std::string::npos) << run.err;
  for (const Quantity quantity : quantities) {
    std::string text;
    ASSERT_TRUE(ReadWholeFile(folder.Path("q" + std::to_string(NumberOf(quantity))), text));
    std::istringstream in(text);
    double x = 0, y = 0;
    int points = 0;
    for (; in >> x >> y; ++points) EXPECT_TRUE(std::isfinite(y)) << quantity << ' ' << x;
    EXPECT_EQ(points, 7) << quantity << '\n' << text;
  }
}

}  // namespace
}  // namespace kalvex
