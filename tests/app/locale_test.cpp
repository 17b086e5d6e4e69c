// The program in an environment with a decimal comma.
#include <clocale>
#include <optional>

#include "app/fit_data.h"

namespace kalvex {
namespace {

// The name of a locale with a decimal comma on this machine, if there is one.
std::optional<std::string> CommaLocale() {
  for (const char* const name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "nl_NL.UTF-8"}) {
    const bool comma = std::setlocale(LC_ALL, name) && std::localeconv()->decimal_point[0] == ',';
    std::setlocale(LC_ALL, "C");
    if (comma) return name;
  }
  return std::nullopt;
}

class Locales : public Fitting {
 protected:
  // Everything that the macro writes in this environment.
  std::string Output(const std::string& setting) {
    folder.Write("loop", "2.5\n");
    folder.Write("m.kvs", start + "BeginLoop(LoopFile=\"loop\");" + Setting(1, "Einf", 1, "Value=%1") + "EndLoop();" +
                              "FitOptions(CalcConfidence=1);" + term +
                              "Fit(NumIters=3);SaveModel(File=\"m.kvm\");"
                              "ExportDataset(DatasetNo=1,File=\"d\",ExportErrorBars=1);"
                              "ExportModelCurve(File=\"c\",ModelNo=1,Quantity=\"R\",XMin=10.5,XMax=20.5,XPts=3);");
    EXPECT_EQ(RunProgram(folder, {"m.kvs"}, {setting}).status, 0);
    std::string all;
    for (const char* const file : {"m.kvm", "m.asc", "d", "c", "Params.dat", "ParCorrs.dat"}) all += folder.Read(file);
    return all;
  }
};

TEST_F(Locales, TheFilesAreTheSameUnderEveryNameOfTheCLocale) {
  const std::string plain = Output("LC_ALL=C");
  EXPECT_NE(folder.Read("d").find("40 0."), std::string::npos);
  EXPECT_EQ(Output("LC_ALL=POSIX"), plain);
  EXPECT_EQ(Output("LC_ALL=C.UTF-8"), plain);
  EXPECT_EQ(Output("LC_ALL=no_such_locale"), plain);
}

TEST_F(Locales, ADecimalCommaChangesNothing) {
  const auto comma = CommaLocale();
  if (!comma) GTEST_SKIP() << "this machine has no locale with a decimal comma (scripts/test makes one)";
  EXPECT_EQ(Output("LC_ALL=" + *comma), Output("LC_ALL=C"));
}

}  // namespace
}  // namespace kalvex
