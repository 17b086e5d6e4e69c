// The real program where there is a screen, and where there is none.
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

}  // namespace
}  // namespace kalvex
