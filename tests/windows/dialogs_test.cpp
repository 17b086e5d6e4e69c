#include "windows/ask_file.h"
#include "windows/open_windows.h"
#include "windows/suspend_dialog.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

class FileDialogs : public OpenWindows {
 protected:
  std::optional<std::string> Ask(const FileQuestion& question) { return AskFile(desk, question); }
};

TEST_F(FileDialogs, OpenWhereTheLastOneOfThisRunEnded) {
  chosenFile = "/data/2003/film.kvm";
  Ask(texts::kLoadModelFile);
  chosenFile.reset();
  Ask(texts::kSaveVdfFile);
  Ask(texts::kRunMacroFile);
  EXPECT_EQ(asked, (Texts{"Load Model in ''", "Save VDF As in '/data/2003/'", "Run Macro in '/data/2003/'"}));
}

TEST_F(FileDialogs, AddTheExtensionToANameThatIsSavedWithoutOne) {
  for (const auto& [chosen, taken] : {std::pair("/a.b/x", "/a.b/x.kvm"), std::pair("/a.b/x.old", "/a.b/x.old")}) {
    chosenFile = chosen;
    EXPECT_EQ(Ask(texts::kSaveModelFile), taken);
    EXPECT_EQ(Ask(texts::kLoadModelFile), chosen);
  }
}

TEST(FileDialogsWithoutAScreen, AreCancelled) {
  HeadlessPlatform platform;
  Session session(platform, 1, Defaults::kFormer);
  Desk desk(session);
  desk.fileFolder = "kept/";
  EXPECT_FALSE(AskFile(desk, texts::kBrowseFile).has_value());
  EXPECT_EQ(desk.fileFolder, "kept/");
}

TEST(TheProgramsFolder, IsThatOfTheRunningFile) {
  HeadlessPlatform platform;
  const std::string folder = platform.ProgramFolder();
  EXPECT_TRUE(folder.ends_with("/tests/")) << folder;
}

TEST(SuspendDialogs, OnlyContinueLooksAtTheCheckBox) {
  SuspendDialog dialog;
  OpenSuspendDialog(dialog);
  EXPECT_TRUE(dialog.open);
  PressContinue(dialog);
  EXPECT_EQ(AnswerOf(dialog), SuspendAnswer::kContinue);
  OpenSuspendDialog(dialog);
  dialog.neverAgain = true;
  PressExitMacro(dialog);
  EXPECT_EQ(AnswerOf(dialog), SuspendAnswer::kExitMacro);
  OpenSuspendDialog(dialog);
  EXPECT_FALSE(dialog.neverAgain);
  dialog.neverAgain = true;
  PressContinue(dialog);
  EXPECT_FALSE(dialog.open);
  EXPECT_EQ(AnswerOf(dialog), SuspendAnswer::kContinueAndNeverAskAgain);
}

TEST(SuspendDialogs, AProgramThatQuitsMeanwhileGoesOn) {
  SuspendDialog dialog;
  OpenSuspendDialog(dialog);
  PressExitMacro(dialog);
  OpenSuspendDialog(dialog);
  EXPECT_EQ(AnswerOf(dialog), SuspendAnswer::kContinue);
}

TEST(SuspendDialogs, ComeBackWhereTheyWereLeft) {
  SuspendDialog dialog;
  EXPECT_FALSE(dialog.placed);
  OpenSuspendDialog(dialog);
  PlaceSuspendDialog(dialog, 30, 40);
  PressContinue(dialog);
  OpenSuspendDialog(dialog);
  EXPECT_TRUE(dialog.placed);
  EXPECT_EQ(std::pair(dialog.x, dialog.y), std::pair(30, 40));
}

}  // namespace
}  // namespace kalvex
