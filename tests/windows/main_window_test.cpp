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
  void Choose(MainCommand command) { ChooseCommand(program, command); }
  bool Answers(MainCommand command) { return CommandAnswers(program, command); }

  ScratchFolder folder;
  InFolder inside;
};

TEST_F(MainWindows, NewModelOpensTheParameterControlBefore) {
  for (const MainCommand command : {MainCommand::kNewModel, MainCommand::kMenuModel}) {
    program.paramControl.open = false;
    Choose(command);
    EXPECT_TRUE(program.paramControl.open);
  }
  EXPECT_EQ(CountModels(program.params), 4);
  EXPECT_TRUE(GetModelByNumber(program.params, 4)->window.paramSelected);
}

TEST_F(MainWindows, TheExperimentOpensTheParameterControlBefore) {
  Choose(MainCommand::kExpParams);
  EXPECT_TRUE(program.expParamsWindow.open && program.paramControl.open);
  program.expParamsWindow.open = false;
  Choose(MainCommand::kMenuExpParams);
  EXPECT_TRUE(program.expParamsWindow.open);
}

TEST_F(MainWindows, EachWindowOpensFromToolbarAndMenuAndComesToTheFront) {
  for (const auto& [fit, manager] : {std::pair(MainCommand::kFitWindow, MainCommand::kDatasetManager),
                                     std::pair(MainCommand::kMenuFit, MainCommand::kMenuDatasetManager)}) {
    program.fitWindow.open = program.datasetManager.open = false;
    program.fitWindow.wantsFront = program.datasetManager.wantsFront = false;
    Choose(fit);
    Choose(manager);
    EXPECT_TRUE(program.fitWindow.open && program.datasetManager.open);
    EXPECT_TRUE(program.fitWindow.wantsFront && program.datasetManager.wantsFront);
  }
  Choose(MainCommand::kParamControl);
  EXPECT_TRUE(program.paramControl.open && program.paramControl.wantsFront);
  EXPECT_EQ(CountModels(program.params), 2);
}

TEST_F(MainWindows, UpdateNowAnswersOnlyWhileAutoUpdateIsOff) {
  EXPECT_TRUE(CommandIsOn(program, MainCommand::kAutoUpdate));
  EXPECT_FALSE(Answers(MainCommand::kUpdateNow));
  Choose(MainCommand::kUpdateNow);
  EXPECT_TRUE(Heard().empty());
  Choose(MainCommand::kAutoUpdate);
  EXPECT_FALSE(CommandIsOn(program, MainCommand::kAutoUpdate));
  EXPECT_FALSE(program.AutoScreenUpdate);
  EXPECT_TRUE(Answers(MainCommand::kUpdateNow));
  Choose(MainCommand::kUpdateNow);
  EXPECT_EQ(Heard(), (Texts{"6:-1", "fit: recompute"}));
  Choose(MainCommand::kAutoUpdate);
  EXPECT_TRUE(program.AutoScreenUpdate);
  EXPECT_TRUE(Heard().empty());
}

TEST_F(MainWindows, TheGraphReaderIsFlippedAndTold) {
  Choose(MainCommand::kGraphReader);
  EXPECT_TRUE(program.GraphReader && CommandIsOn(program, MainCommand::kGraphReader));
  Choose(MainCommand::kGraphReader);
  EXPECT_FALSE(program.GraphReader);
  EXPECT_EQ(Heard(), (Texts{"7:-1", "7:-1"}));
}

TEST_F(MainWindows, TheFileMenuOnlyExits) {
  for (const MainCommand command : {MainCommand::kFileNew, MainCommand::kFileOpen, MainCommand::kFileSave,
                                    MainCommand::kFileSaveAs, MainCommand::kFileClose}) {
    EXPECT_FALSE(Answers(command));
    Choose(command);
  }
  EXPECT_FALSE(program.mainWindow.quit);
  EXPECT_TRUE(asked.empty());
  Choose(MainCommand::kExit);
  EXPECT_TRUE(program.mainWindow.quit);
  EXPECT_TRUE(messages.empty());
}

TEST_F(MainWindows, EveryButtonAndEntryIsACommand) {
  const auto change = [&](int command) {
    const auto state = [&] {
      return std::to_string(CountModels(program.params)) + std::to_string(program.fitWindow.open) +
             std::to_string(program.paramControl.open) + std::to_string(program.expParamsWindow.open) +
             std::to_string(program.datasetManager.open) + std::to_string(program.AutoScreenUpdate) +
             std::to_string(program.GraphReader) + std::to_string(program.mainWindow.quit) +
             std::to_string(program.mainWindow.about) + std::to_string(asked.size()) + std::to_string(Heard().size());
    };
    program.fitWindow.open = program.paramControl.open = program.expParamsWindow.open = false;
    program.datasetManager.open = program.mainWindow.quit = program.mainWindow.about = false;
    program.AutoScreenUpdate = false;
    const std::string before = state();
    Choose(static_cast<MainCommand>(command));
    return before != state();
  };
  for (const texts::ToolButtonText& button : texts::kToolButtons) {
    if (static_cast<MainCommand>(button.command) == MainCommand::kNewGraph) continue;
    EXPECT_TRUE(change(button.command)) << button.tip;
  }
  for (const texts::MenuItemText& item : texts::kMenuItems) {
    // These leave no trace in the windows: they write files or show a document.
    if (item.command == 202 || item.command == 403 || item.command == 404 || item.command == 500) continue;
    EXPECT_EQ(change(item.command), item.command > 104) << item.item;
  }
}

TEST_F(MainWindows, AMacroFromTheMenuThatQuitsOnlyEndsItself) {
  folder.Write("m.kvs", "NewModel(); Exit(QuitApp=1); NewModel();");
  chosenFile = "m.kvs";
  Choose(MainCommand::kRunMacro);
  EXPECT_EQ(CountModels(program.params), 3);
  EXPECT_FALSE(program.mainWindow.quit);
  EXPECT_EQ(RunMacroDialog(program), kMacroQuit);
  chosenFile.reset();
  EXPECT_EQ(RunMacroDialog(program), -1);
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
  EXPECT_EQ(Heard(), (Texts{"4:1", "4:2", "fit: model"}));
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
  program.platform.self = &messages;
  program.platform.programFolder = [](void*) { return std::string("bin/"); };
  program.platform.openDocument = [](void* self, const std::string& path) {
    static_cast<Texts*>(self)->push_back(path);
  };
  Choose(MainCommand::kManual);
  EXPECT_EQ(messages, Texts{"bin/Manual.pdf"});
}

TEST_F(MainWindows, TheAboutBoxHasThreeLines) {
  Choose(MainCommand::kAbout);
  EXPECT_TRUE(program.mainWindow.about);
  EXPECT_EQ(AboutLines("1.2", "today"),
            (std::array<std::string, 3>{"Kalvex - software to fit optical spectra", "Version: 1.2", "Updated: today"}));
  CloseAbout(program);
  EXPECT_FALSE(program.mainWindow.about);
}

TEST_F(MainWindows, DuringARunNothingThatChangesModelsAnswersAndExitStopsIt) {
  program.AutoScreenUpdate = false;
  program.fit.FitRunning = true;
  for (const MainCommand command : {MainCommand::kNewModel, MainCommand::kMenuModel, MainCommand::kRunMacro,
                                    MainCommand::kLoadParams, MainCommand::kTestDerivatives, MainCommand::kUpdateNow}) {
    EXPECT_FALSE(Answers(command));
    Choose(command);
  }
  EXPECT_EQ(CountModels(program.params), 2);
  EXPECT_TRUE(asked.empty());
  EXPECT_FALSE(program.fit.StopRequested);
  CloseMainWindow(program);
  EXPECT_TRUE(program.mainWindow.quit && program.fit.StopRequested);
}

}  // namespace
}  // namespace kalvex
