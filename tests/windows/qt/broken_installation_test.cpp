// The real program with an incomplete installation of the toolkit.
#include <algorithm>
#include <filesystem>

#include "support/run_program.h"
#include "windows/qt/on_screen.h"

namespace kalvex {
namespace {

class OnABrokenInstallation : public testing::Test {
 protected:
  std::string Said(const std::string& setting) {
    const ProgramRun run = RunProgram(folder, {"m.kvs"}, {setting});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, "here\n");
    return run.err;
  }
  ScratchFolder folder;
};

TEST_F(OnABrokenInstallation, TheProgramSaysInOneLineWhatIsMissingAndRunsItsMacro) {
  folder.Write("m.kvs", "Echo(Text=\"here\");Exit(QuitApp=1);");
  EXPECT_EQ(Said("QT_QPA_PLATFORM_PLUGIN_PATH=").find("kalvex"), std::string::npos);
  const ScratchFolder parts;
  const std::string setting = "QT_QPA_PLATFORM_PLUGIN_PATH=" + parts.Path("platforms");
  EXPECT_EQ(Said(setting), "kalvex: windows cannot be opened: platforms/libqxcb.so is not installed\n");
  std::filesystem::create_directory(parts.Path("platforms"));
  parts.Write("platforms/libqxcb.so", "damaged");
  const std::string said = Said(setting);
  EXPECT_TRUE(said.starts_with("kalvex: windows cannot be opened: ")) << said;
  EXPECT_NE(said.find("libqxcb.so"), std::string::npos) << said;
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
}

}  // namespace
}  // namespace kalvex
