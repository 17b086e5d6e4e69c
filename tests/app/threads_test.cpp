// The files of a run do not depend on the number of threads.
#include <map>

#include "app/kalvex_run.h"

namespace kalvex {
namespace {

class Threads : public Kalvex {
 protected:
  // Runs the macro with this number of threads, 0 for no option, and returns what is written.
  std::map<std::string, std::string> FilesWith(int threads, const std::string& macro,
                                               const std::vector<std::string>& names) {
    folder.Write("m.kvs", macro);
    std::vector<std::string> args = {"--headless", "m.kvs"};
    if (threads > 0) args.insert(args.begin(), {"--threads", std::to_string(threads)});
    const ProgramRun done = RunProgram(folder, args);
    EXPECT_EQ(done.status, 0) << done.err;
    std::map<std::string, std::string> files{{"out", done.out}};
    for (const std::string& name : names) {
      files[name] = folder.Read(name);
      EXPECT_NE(files[name], "") << name;
      folder.Write(name, "");
    }
    return files;
  }
};

TEST_F(Threads, FitsAndExportsAreTheSameByteForByte) {
  std::string data, mesh;
  for (int i = 0; i < 2500; ++i) {
    const double x = 20 + 0.8 * i;
    const double y = ReflectivityOf(EpsOf({4, 300, 500, 30}, x)) + 0.003 * std::sin(12.0 * i);
    data += std::to_string(x) + ' ' + std::to_string(y) + " 0.005\n";
    if (i % 20 == 0) mesh += std::to_string(x) + " 0\n";
  }
  folder.Write("R.dat", data);
  folder.Write("mesh.dat", mesh);
  std::string macro = OscillatorModel({4.4, 310, 460, 40});
  for (int row = 2; row <= 8; ++row) {
    macro += "InsertModelRow(ModelNo=1,LorNo=" + std::to_string(row) + ");\n" +
             Setting(1, "Wo", row, "Value=" + std::to_string(200 * row)) +
             Setting(1, "Wp", row, "Value=" + std::to_string(10 * row)) +
             Setting(1, "G", row, "Value=" + std::to_string(20 * row));
  }
  const std::string grid = ",XMin=5,XMax=5000,XPts=6000";
  macro +=
      "LoadDataset(DatasetNo=1,Quantity=\"R\",MasterFile=\"R.dat\");\n"
      "LoadDataset(DatasetNo=2,Quantity=\"R\",MasterFile=\"mesh.dat\");\n"
      "WindowFit();\nAddChiSqTerm(DatasetNo=1,ModelNo=1);\n"
      "FitOptions(CalcConfidence=1);\nFit(NumIters=3);\n"
      "SaveModel(ModelNo=1,File=\"plain.kvm\");\n"
      "ExportModelCurve(File=\"R.curve\",ModelNo=1,Quantity=\"R\"" +
      grid +
      ");\n"
      "VarDielFunc(ModelNo=1,Source1DatasetNo=2,KK=1,On=1,FitActive=1);\nFit(NumIters=3);\n"
      "SaveModel(ModelNo=1,File=\"mesh.kvm\");\nSaveVarDielFunc(ModelNo=1,File=\"mesh.kvv\");\n"
      "VarDielFunc(ModelNo=1,Source1DatasetNo=2,KK=0);\nFit(NumIters=3);\n"
      "SaveVarDielFunc(ModelNo=1,File=\"free.kvv\");\n"
      "ExportModelCurve(File=\"E1.curve\",ModelNo=1,Quantity=\"E1\"" +
      grid + ");\n";
  const std::vector<std::string> names = {"plain.kvm", "mesh.kvm", "mesh.kvv",   "free.kvv",
                                          "R.curve",   "E1.curve", "Params.dat", "ParCorrs.dat"};
  const auto alone = FilesWith(1, macro, names);
  for (const int threads : {2, 7, 0}) {
    const auto files = FilesWith(threads, macro, names);
    for (const auto& [name, content] : alone) EXPECT_TRUE(files.at(name) == content) << name << ' ' << threads;
  }
}

}  // namespace
}  // namespace kalvex
