// The real program with a screen and without one.
#include <algorithm>
#include <filesystem>

#include "app/kalvex_run.h"

namespace kalvex {
namespace {

bool HasWindows() {
  return std::filesystem::exists(std::filesystem::path(KALVEX_PROGRAM).parent_path() / "libkalvex_windows.so");
}

TEST_F(Kalvex, WithoutAScreenSaysNothingOfWindows) {
  folder.Write("m.kvs", "Echo(Text=\"here\");");
  for (const char* const display : {"DISPLAY=", "DISPLAY=:654321", "DISPLAY=nonsense"}) {
    const ProgramRun quiet = RunProgram(folder, {"m.kvs"}, {display, "WAYLAND_DISPLAY="});
    EXPECT_EQ(quiet.status, 0) << display;
    EXPECT_EQ(quiet.out, "here\n") << display;
    EXPECT_EQ(quiet.err, "") << display;
  }
}

TEST_F(Kalvex, WithAScreenRunsAMacroAmongWindowsAndLeavesWhenItSaysSo) {
  if (!HasWindows()) GTEST_SKIP() << "built without windows";
  folder.Write("m.kvs",
               "NewModel();NewGraph();AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");Wait(Time=20);"
               "ExportGraph(GraphNo=1,File=\"g.dat\");Echo(Text=\"here\");Exit(QuitApp=1);");
  const ProgramRun shown = RunProgram(folder, {"m.kvs"}, {"QT_QPA_PLATFORM=offscreen", "DISPLAY=:654321"});
  EXPECT_EQ(shown.status, 0);
  EXPECT_EQ(shown.out, "here\n");
  EXPECT_EQ(folder.Read("g.dat").substr(0, 4), "W R\n");
}

// The toolkit sets the process to the user's locale.
TEST_F(Kalvex, AmongWindowsADecimalCommaChangesNothing) {
  if (!HasWindows()) GTEST_SKIP() << "built without windows";
  folder.Write("R.dat", "100.5 0.5 0.01\n200.25 0.4 0.01\n300.75 0.6 0.01\n");
  folder.Write("m.kvs",
               "LoadDataset(MasterFile=\"R.dat\");NewModel();WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);"
               "DatasetManager();NewGraph();AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");Wait(Time=20);"
               "FitOptions(CalcConfidence=1);Fit(NumIters=2);ExportGraph(GraphNo=1,File=\"g.dat\");"
               "ExportDataset(DatasetNo=1,File=\"d.dat\");Exit(QuitApp=1);");
  const auto written = [&](const std::string& locale) {
    EXPECT_EQ(RunProgram(folder, {"m.kvs"}, {"QT_QPA_PLATFORM=offscreen", "DISPLAY=:654321", locale}).status, 0);
    return folder.Read("g.dat") + folder.Read("d.dat") + folder.Read("Params.dat");
  };
  const std::string plain = written("LC_ALL=C");
  EXPECT_NE(plain.find("100.5 0.5\n"), std::string::npos);
  EXPECT_EQ(written("LC_ALL=de_DE.UTF-8"), plain);
}

// A copy of the program in its own folder, beside any library of windows that a test puts there.
class KalvexElsewhere : public Kalvex {
 protected:
  KalvexElsewhere() : program(elsewhere.Path("kalvex")) {
    std::filesystem::copy_file(KALVEX_PROGRAM, program);
    folder.Write("m.kvs", "Echo(Text=\"here\");");
  }
  // The messages about windows from a run with a screen named in the environment.
  std::string SaidOfWindows(const std::vector<std::string>& args, const std::string& setting = "QT_QPA_PLATFORM=") {
    const ProgramRun done = RunCopy(program, folder, args, {"DISPLAY=:654321", "WAYLAND_DISPLAY=", setting});
    EXPECT_EQ(done.status, 0);
    EXPECT_EQ(done.out, args.empty() ? "" : "here\n");
    return done.err;
  }
  static int CountLines(const std::string& text) {
    return static_cast<int>(std::count(text.begin(), text.end(), '\n'));
  }

  ScratchFolder elsewhere;
  std::string program;
};

TEST_F(KalvexElsewhere, WithoutTheLibraryOfWindowsSaysNothingOfThem) {
  EXPECT_EQ(SaidOfWindows({"m.kvs"}), "");
  EXPECT_EQ(CountLines(SaidOfWindows({})), 1);
}

TEST_F(KalvexElsewhere, SaysInOneLineWhatIsWrongWithTheLibraryOfWindows) {
  std::string damaged = "no library";
  if (HasWindows()) {
    // The first half of the real library.
    const auto whole = std::filesystem::path(KALVEX_PROGRAM).parent_path() / "libkalvex_windows.so";
    std::filesystem::copy_file(whole, elsewhere.Path("libkalvex_windows.so"));
    damaged = elsewhere.Read("libkalvex_windows.so").substr(0, std::filesystem::file_size(whole) / 2);
  }
  for (const std::string& content : {damaged, std::string("no library"), std::string()}) {
    elsewhere.Write("libkalvex_windows.so", content);
    for (const std::vector<std::string>& args : {std::vector<std::string>{"m.kvs"}, {}}) {
      const std::string said = SaidOfWindows(args);
      EXPECT_TRUE(said.starts_with("kalvex: windows cannot be opened: ")) << said;
      EXPECT_NE(said.find("libkalvex_windows.so"), std::string::npos) << said;
      EXPECT_EQ(CountLines(said), 1) << said;
    }
  }
}

TEST_F(KalvexElsewhere, NoCutOfTheLibraryOfWindowsEndsTheProgram) {
  if (!HasWindows()) GTEST_SKIP() << "built without windows";
  const auto whole = std::filesystem::path(KALVEX_PROGRAM).parent_path() / "libkalvex_windows.so";
  const std::string copy = elsewhere.Path("libkalvex_windows.so");
  constexpr int kCuts = 16;
  for (int cut = kCuts - 1; cut >= 0; --cut) {
    std::filesystem::copy_file(whole, copy, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::resize_file(copy, std::filesystem::file_size(whole) * static_cast<unsigned>(cut) / kCuts);
    EXPECT_LE(CountLines(SaidOfWindows({"m.kvs"})), 1) << cut;
  }
}

}  // namespace
}  // namespace kalvex
