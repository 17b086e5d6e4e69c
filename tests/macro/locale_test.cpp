// A window toolkit may switch the process to a locale with a decimal comma. Macros and their files must not change.
#include <clocale>

#include "macro/executing.h"

namespace kalvex {
namespace {

// Sets a locale with a decimal comma for the process during its lifetime, if the machine has one.
class CommaLocale {
 public:
  CommaLocale() : before_(std::setlocale(LC_ALL, nullptr)) {
    for (const char* const name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "nl_NL.UTF-8"}) {
      found_ = std::setlocale(LC_ALL, name) && std::localeconv()->decimal_point[0] == ',';
      if (found_) return;
    }
  }
  ~CommaLocale() { std::setlocale(LC_ALL, before_.c_str()); }
  CommaLocale(const CommaLocale&) = delete;
  CommaLocale& operator=(const CommaLocale&) = delete;
  bool Found() const { return found_; }

 private:
  std::string before_;
  bool found_ = false;
};

TEST_F(Executing, ADecimalCommaOfTheProcessReachesNoFile) {
  folder.Write("R.dat", "100.5 0.25 0.125\n200.5 0.5 0.125\n");
  folder.Write("loop", "2.5\n");
  const std::string macro =
      "LoadDataset(MasterFile=\"R.dat\");TransformDataset(Scale=1.5);"
      "ExportDataset(DatasetNo=1,File=\"d\",ExportErrorBars=1);NewModel();BeginLoop(LoopFile=\"loop\");"
      "SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=%1);EndLoop();SaveModel(File=\"m.kvm\");"
      "ExportModelCurve(File=\"c\",ModelNo=1,Quantity=\"R\",XMin=10.5,XMax=20.5,XPts=3);"
      "WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1,Weight=0.5);FitOptions(LogFit=1);Fit(NumIters=1);";
  ASSERT_EQ(Run(macro), kMacroEnded);
  const std::string files[] = {"d", "m.asc", "c", "Par.dat", "Fitlog.dat"};
  std::vector<std::string> before;
  for (const std::string& file : files) before.push_back(folder.Read(file));
  EXPECT_EQ(before[0], "100.5 0.375 0.1875\n200.5 0.75 0.1875\n");
  EXPECT_NE(before[1].find("Einf = 2.500000"), std::string::npos);

  for (const std::string& file : {std::string("Par.dat"), std::string("Fitlog.dat")}) {
    std::remove(folder.Path(file).c_str());
  }
  const CommaLocale comma;
  if (!comma.Found()) GTEST_SKIP() << "this machine has no locale with a decimal comma (scripts/test makes one)";
  // A new desk starts in the same state as the first one.
  const auto fresh = std::make_unique<OpenDesk>();
  ASSERT_EQ(RunMacro(fresh->desk, "m.kvs"), kMacroEnded);
  for (std::size_t i = 0; i < before.size(); ++i) EXPECT_EQ(folder.Read(files[i]), before[i]) << files[i];
}

}  // namespace
}  // namespace kalvex
