// A fit on several threads with open windows.
#include <QLabel>
#include <QPushButton>
#include <QThread>

#include "evaluation/spectrum_team.h"
#include "windows/qt/graph_view.h"
#include "windows/qt/on_screen.h"

namespace kalvex {
namespace {

class FitOfTwoThreads : public OnScreen {
 protected:
  FitOfTwoThreads() : OnScreen(2) {
    constexpr int kPoints = 20000;
    std::string rows;
    for (int i = 0; i < kPoints; ++i) {
      const double x = 20 + 0.1 * i;
      rows += std::to_string(x) + ' ' + std::to_string(0.4 + 0.2 * std::sin(x / 90)) + " 0.01\n";
    }
    folder.Write("R_a.dat", rows);
    std::string macro =
        "LoadDataset(DatasetNo=1,MasterFile=\"R_a.dat\");NewModel();NewGraph(XPos=620,YPos=120,Width=300,Height=200);"
        "AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");ExpParams();DatasetManager();";
    for (int row = 2; row <= 12; ++row) {
      macro += "InsertModelRow(ModelNo=1,LorNo=" + std::to_string(row) + ");";
      for (const auto& [column, value] : {std::pair("Wo", 150 * row), std::pair("Wp", 100), std::pair("G", 60)}) {
        macro += "SetModelParam(ModelNo=1,ParamName=\"" + std::string(column) + "\",LorNo=" + std::to_string(row) +
                 ",Value=" + std::to_string(value) + ");";
      }
    }
    Run(macro + "WindowFit(XPos=20,YPos=200);AddChiSqTerm(DatasetNo=1,ModelNo=1);");
    fit.options.StopOnReduction = false;
  }
  std::string TextOf(const char* label) { return Find<QLabel>(label)->text().toStdString(); }
  // Calls act each time the run processes events, until act returns false.
  void DuringTheRun(std::function<bool()> act) {
    QTimer eachTime;
    bool more = true;
    QObject::connect(&eachTime, &QTimer::timeout, [&] {
      if (fit.FitRunning && more) more = act();
    });
    eachTime.start(0);
    Press("fitStart");
    EXPECT_FALSE(more);
  }
};

TEST_F(FitOfTwoThreads, LabelsAndGraphsFollowAndStopAnswers) {
  const QImage before = dynamic_cast<GraphView*>(keeper.graphWidget(1))->picture();
  const std::string chiSq = TextOf("fitChiSq");
  int at = -1;
  DuringTheRun([&] {
    EXPECT_EQ(QThread::currentThread(), qApp->thread());
    if (fit.IterationCount < 2) return true;
    keeper.Reconcile();  // without the pause between two updates
    EXPECT_EQ(TextOf("fitIteration"), std::to_string(fit.IterationCount));
    EXPECT_NE(TextOf("fitChiSq"), chiSq);
    EXPECT_NE(dynamic_cast<GraphView*>(keeper.graphWidget(1))->picture(), before);
    at = fit.IterationCount;
    QTest::mouseClick(Find<QPushButton>("fitStart"), Qt::LeftButton);
    return false;
  });
  ASSERT_NE(eval.team, nullptr) << "the spectrum was not shared out";
  EXPECT_EQ(fit.report.stop, "stopped by the user");
  EXPECT_LE(fit.IterationCount, at + 1);
  EXPECT_EQ(Find<QPushButton>("fitStart")->text(), "START");
}

TEST_F(FitOfTwoThreads, WindowsThatComeAndGoMeanwhileChangeNoResult) {
  fit.options.StopOnIterations = true;
  fit.options.MaxIterations = 6;
  Press("fitStart");
  const double alone = fit.TotalChiSq;
  Press("fitUndo");
  fit.IterationCount = 0;  // otherwise it keeps the value of the previous run until the first iteration
  int seen = 0;
  DuringTheRun([&] {
    if (fit.IterationCount == seen) return true;
    seen = fit.IterationCount;
    if (seen == 1) keeper.graphWidget(1)->close();
    if (seen == 2) session.NewGraph().GetStatus().Ignore();
    if (seen == 3) Find<QWidget>("datasetManager")->close();
    Settle();
    return seen < 4;
  });
  EXPECT_EQ(fit.TotalChiSq, alone);
  EXPECT_EQ(keeper.graphWidget(1), nullptr);
  EXPECT_NE(keeper.graphWidget(2), nullptr);
}

}  // namespace
}  // namespace kalvex
