#include "windows/main_window.h"

#include "macro/run_macro.h"
#include "support/scratch_folder.h"
#include "windows/open_windows.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

class MainWindows : public OpenWindows {
 protected:
  MainWindows() : inside(folder.Name()) {}
  void Choose(MainCommand command) { ChooseCommand(desk, command); }
  bool Answers(MainCommand command) { return CommandAnswers(session, command); }

  ScratchFolder folder;
  InFolder inside;
};

TEST_F(MainWindows, NewModelOpensTheParameterControlBefore) {
  for (const MainCommand command : {MainCommand::kNewModel, MainCommand::kMenuModel}) {
    desk.paramControl.open = false;
    Choose(command);
    EXPECT_TRUE(desk.paramControl.open);
  }
  EXPECT_EQ(CountModels(params), 4);
  EXPECT_TRUE(desk.models.at(4).paramSelected);
}

TEST_F(MainWindows, TheExperimentOpensTheParameterControlBefore) {
  Choose(MainCommand::kExpParams);
  EXPECT_TRUE(desk.expParams.open && desk.paramControl.open);
  desk.expParams.open = false;
  Choose(MainCommand::kMenuExpParams);
  EXPECT_TRUE(desk.expParams.open);
}

TEST_F(MainWindows, EachWindowOpensFromToolbarAndMenuAndComesToTheFront) {
  for (const auto& [openFit, openManager] : {std::pair(MainCommand::kFitWindow, MainCommand::kDatasetManager),
                                             std::pair(MainCommand::kMenuFit, MainCommand::kMenuDatasetManager)}) {
    desk.fitWindow.open = desk.datasetManager.open = false;
    desk.fitWindow.wantsFront = desk.datasetManager.wantsFront = false;
    Choose(openFit);
    Choose(openManager);
    EXPECT_TRUE(desk.fitWindow.open && desk.datasetManager.open);
    EXPECT_TRUE(desk.fitWindow.wantsFront && desk.datasetManager.wantsFront);
  }
  Choose(MainCommand::kParamControl);
  EXPECT_TRUE(desk.paramControl.open && desk.paramControl.wantsFront);
  EXPECT_EQ(CountModels(params), 2);
}

TEST_F(MainWindows, UpdateNowAnswersOnlyWhileAutoUpdateIsOff) {
  EXPECT_TRUE(CommandIsOn(session, MainCommand::kAutoUpdate));
  EXPECT_FALSE(Answers(MainCommand::kUpdateNow));
  Choose(MainCommand::kUpdateNow);
  EXPECT_TRUE(Heard().empty());
  Choose(MainCommand::kAutoUpdate);
  EXPECT_FALSE(CommandIsOn(session, MainCommand::kAutoUpdate));
  EXPECT_FALSE(session.AutoScreenUpdate());
  EXPECT_TRUE(Answers(MainCommand::kUpdateNow));
  GraphsHeard();
  Heard();
  Choose(MainCommand::kUpdateNow);
  EXPECT_EQ(Heard(), (Texts{"fit", "fit"}));
  EXPECT_TRUE(GraphsHeard());
  Choose(MainCommand::kAutoUpdate);
  EXPECT_TRUE(session.AutoScreenUpdate());
}

TEST_F(MainWindows, TheGraphReaderIsFlippedAndTold) {
  Choose(MainCommand::kGraphReader);
  EXPECT_TRUE(session.GraphReader() && CommandIsOn(session, MainCommand::kGraphReader));
  Choose(MainCommand::kGraphReader);
  EXPECT_FALSE(session.GraphReader());
  EXPECT_EQ(Heard(), (Texts{"settings", "settings"}));
}

TEST_F(MainWindows, TheFileMenuOnlyExits) {
  for (const MainCommand command : {MainCommand::kFileNew, MainCommand::kFileOpen, MainCommand::kFileSave,
                                    MainCommand::kFileSaveAs, MainCommand::kFileClose}) {
    EXPECT_FALSE(Answers(command));
    Choose(command);
  }
  EXPECT_FALSE(desk.mainWindow.quit);
  EXPECT_TRUE(asked.empty());
  Choose(MainCommand::kExit);
  EXPECT_TRUE(desk.mainWindow.quit);
  EXPECT_TRUE(messages.empty());
}

TEST_F(MainWindows, EveryButtonAndEntryIsACommand) {
  const auto change = [&](int command) {
    const auto state = [&] {
      return std::to_string(CountModels(params)) + std::to_string(desk.fitWindow.open) +
             std::to_string(desk.paramControl.open) + std::to_string(desk.expParams.open) +
             std::to_string(desk.datasetManager.open) + std::to_string(session.AutoScreenUpdate()) +
             std::to_string(session.GraphReader()) + std::to_string(desk.mainWindow.quit) +
             std::to_string(desk.mainWindow.about) + std::to_string(asked.size()) + std::to_string(Heard().size());
    };
    desk.fitWindow.open = desk.paramControl.open = desk.expParams.open = false;
    desk.datasetManager.open = desk.mainWindow.quit = desk.mainWindow.about = false;
    session.SetAutoScreenUpdate(false).Ignore();
    Heard();
    const std::string before = state();
    Choose(static_cast<MainCommand>(command));
    return before != state();
  };
  for (const texts::ToolButtonText& button : texts::kToolButtons) {
    if (static_cast<MainCommand>(button.command) == MainCommand::kNewGraph) continue;
    EXPECT_TRUE(change(button.command)) << button.tip;
  }
  for (const texts::MenuItemText& item : texts::kMenuItems) {
    // These commands have no effect on windows: they write files or show a document.
    if (item.command == 202 || item.command == 403 || item.command == 404 || item.command == 500) continue;
    EXPECT_EQ(change(item.command), item.command > 104) << item.item;
  }
}

TEST_F(MainWindows, AMacroFromTheMenuThatQuitsOnlyEndsItself) {
  folder.Write("m.kvs", "NewModel(); Exit(QuitApp=1); NewModel();");
  chosenFile = "m.kvs";
  Choose(MainCommand::kRunMacro);
  EXPECT_EQ(CountModels(params), 3);
  EXPECT_FALSE(desk.mainWindow.quit);
  EXPECT_EQ(RunMacroDialog(desk), kMacroQuit);
  chosenFile.reset();
  EXPECT_EQ(RunMacroDialog(desk), -1);
  EXPECT_EQ(asked, (Texts{"Run Macro in ''", "Run Macro in ''", "Run Macro in ''"}));
}

TEST_F(MainWindows, ParametersAreSavedWithTheExtensionAndLoaded) {
  Cell(first, 0, Wo).value = 321;
  chosenFile = "p";
  Choose(MainCommand::kSaveParams);
  Cell(first, 0, Wo).value = 5;
  chosenFile = "p.kvp";
  Choose(MainCommand::kLoadParams);
  EXPECT_EQ(Cell(first, 0, Wo).value, 321);
  EXPECT_EQ(Heard(), (Texts{"model 1", "model 2", "fit"}));
  chosenFile.reset();
  Choose(MainCommand::kSaveParams);
  Choose(MainCommand::kLoadParams);
  EXPECT_TRUE(Heard().empty());
  EXPECT_EQ(asked.size(), 4u);
}

TEST_F(MainWindows, SpecialParametersAndDerivativesAreWritten) {
  folder.Write("ParsSpecial.cfg", "1 out.txt w 1 1 1\n");
  Choose(MainCommand::kSaveParamsSpecial);
  EXPECT_EQ(folder.Read("out.txt"), "w 100 0\n");
  Choose(MainCommand::kTestDerivatives);
  EXPECT_TRUE(folder.Read("TestDeriv1.txt").starts_with("NumParams = "));
}

TEST_F(MainWindows, TheManualLiesBesideTheProgram) {
  Texts opened;
  platform.folder = [] { return std::string("bin/"); };
  platform.document = [&](const std::string& path) { opened.push_back(path); };
  Choose(MainCommand::kManual);
  EXPECT_EQ(opened, Texts{"bin/Manual.pdf"});
}

TEST_F(MainWindows, TheAboutBoxHasThreeLines) {
  Choose(MainCommand::kAbout);
  EXPECT_TRUE(desk.mainWindow.about);
  EXPECT_EQ(AboutLines("1.2", "today"),
            (std::array<std::string, 3>{"Kalvex - software to fit optical spectra", "Version: 1.2", "Updated: today"}));
  CloseAbout(desk);
  EXPECT_FALSE(desk.mainWindow.about);
}

TEST_F(MainWindows, DuringARunNothingThatChangesModelsAnswersAndExitStopsIt) {
  session.SetAutoScreenUpdate(false).Ignore();
  fit.FitRunning = true;
  for (const MainCommand command : {MainCommand::kNewModel, MainCommand::kMenuModel, MainCommand::kRunMacro,
                                    MainCommand::kLoadParams, MainCommand::kTestDerivatives, MainCommand::kUpdateNow}) {
    EXPECT_FALSE(Answers(command));
    Choose(command);
  }
  EXPECT_EQ(CountModels(params), 2);
  EXPECT_TRUE(asked.empty());
  EXPECT_FALSE(fit.StopRequested);
  CloseMainWindow(desk);
  EXPECT_TRUE(desk.mainWindow.quit && fit.StopRequested);
}

}  // namespace
}  // namespace kalvex
