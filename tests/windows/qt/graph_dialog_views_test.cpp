#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

#include "windows/qt/on_screen.h"

namespace kalvex {
namespace {

using Texts = std::vector<std::string>;

class DialogsOfAGraph : public OnScreen {
 protected:
  DialogsOfAGraph() {
    folder.Write("R_a.dat", "100 0.5\n500 0.4\n900 0.6\n");
    folder.Write("E1_b.dat", "100 1\n500 2\n900 3\n");
    Run("LoadDataset(DatasetNo=1,MasterFile=\"R_a.dat\");LoadDataset(DatasetNo=2,MasterFile=\"E1_b.dat\");NewModel();"
        "NewGraph(XPos=20,YPos=120,Width=500,Height=400);NewGraph(XPos=600,YPos=120,Width=300,Height=200);");
  }
  void DoublePress(std::uint32_t number, bool inFrame) {
    const QPoint at = inFrame ? QPoint(200, 100) : QPoint(5, 5);
    QTest::mouseDClick(keeper.graphWidget(number), Qt::LeftButton, {}, at);
    Settle();
  }
  static Texts RowsOf(const QTreeWidget& list) {
    Texts rows;
    for (int k = 0; k < list.topLevelItemCount(); ++k) rows.push_back(list.topLevelItem(k)->text(0).toStdString());
    return rows;
  }
  void OnlyData() {
    Press("contentsKindAll");
    Press("contentsKindDATA");
  }
  QTreeWidget& available() { return *Find<QTreeWidget>("contentsAvailable"); }
  QTreeWidget& chosen() { return *Find<QTreeWidget>("contentsChosen"); }
};

TEST_F(DialogsOfAGraph, PropertiesApplyShowsWhatTheAxesMadeOfThem) {
  DoublePress(1, false);
  EXPECT_EQ(Find<QWidget>("properties")->windowTitle(), "Graph1 - properties");
  Type("propertiesXMin", "900");
  Type("propertiesXMax", "100");
  EXPECT_EQ(GraphNo(1).X.max, 1000);
  Press("propertiesApply");
  EXPECT_EQ(FieldText("propertiesXMin"), "100");
  EXPECT_EQ(GraphNo(1).X.max, 900);
  Type("propertiesYTitle", "Abs");
  Find<QCheckBox>("propertiesShowFitted")->click();
  Press("propertiesOk");
  EXPECT_EQ(Find<QWidget>("properties"), nullptr);
  EXPECT_EQ(GraphNo(1).Y.title, "Abs");
  EXPECT_TRUE(GraphNo(1).ShowFitted);
  DoublePress(1, false);
  Type("propertiesXMax", "5");
  Press("propertiesCancel");
  EXPECT_EQ(GraphNo(1).X.max, 900);
}

TEST_F(DialogsOfAGraph, ASecondDialogWaitsForTheFirst) {
  DoublePress(1, false);
  Type("propertiesXMax", "77");
  DoublePress(2, true);
  EXPECT_EQ(Find<QWidget>("contents"), nullptr);
  EXPECT_EQ(FieldText("propertiesXMax"), "77");
  Press("propertiesCancel");
  DoublePress(2, true);
  EXPECT_EQ(Find<QWidget>("contents")->windowTitle(), "Graph2 - contents");
}

TEST_F(DialogsOfAGraph, FiltersOfferCurves) {
  DoublePress(1, true);
  EXPECT_EQ(available().topLevelItemCount(), 2 + 15 + 2 + 4 + 1);
  OnlyData();
  EXPECT_FALSE(Find<QCheckBox>("contentsKindAll")->isChecked());
  EXPECT_EQ(RowsOf(available()), (Texts{"DATA [R] \"R_a.dat\"", "DATA [E1] \"E1_b.dat\""}));
  Press("contentsQuantityE1");
  EXPECT_EQ(RowsOf(available()), Texts{"DATA [R] \"R_a.dat\""});
  Press("contentsQuantityAll");
  EXPECT_EQ(available().topLevelItemCount(), 2);
}

TEST_F(DialogsOfAGraph, CurvesMoveAndAreStoredByOk) {
  DoublePress(1, true);
  OnlyData();
  Click(available(), 0);
  Press("contentsToGraph");
  Press("contentsToGraph");
  EXPECT_EQ(RowsOf(chosen()), Texts{"DATA [R] \"R_a.dat\""});
  EXPECT_TRUE(GraphNo(1).curves.empty());
  Press("contentsApply");
  EXPECT_EQ(GraphNo(1).curves.size(), 1u);
  Press("contentsFromGraph");
  EXPECT_EQ(chosen().topLevelItemCount(), 0);
  Press("contentsCancel");
  EXPECT_EQ(GraphNo(1).curves.size(), 1u);
}

TEST_F(DialogsOfAGraph, TheGroupEditsAllSelectedCurves) {
  DoublePress(1, true);
  OnlyData();
  Click(available(), 0);
  Click(available(), 1, Qt::ControlModifier);
  Press("contentsToGraph");
  auto* const line = Find<QCheckBox>("contentsLine");
  EXPECT_EQ(line->checkState(), Qt::Checked);
  Click(chosen(), 0);
  line->click();
  EXPECT_EQ(line->checkState(), Qt::Unchecked);
  Click(chosen(), 1, Qt::ControlModifier);
  EXPECT_EQ(line->checkState(), Qt::PartiallyChecked);
  Type("contentsScale", "2.");
  EXPECT_EQ(FieldText("contentsScale"), "2.");
  QTest::keyClick(Find<QComboBox>("contentsColor"), Qt::Key_End);
  QTest::keyClick(Find<QComboBox>("contentsShape"), Qt::Key_Down);
  Press("contentsOk");
  ASSERT_EQ(GraphNo(1).curves.size(), 2u);
  for (const Curve& curve : GraphNo(1).curves) {
    EXPECT_EQ(curve.Scale, 2);
    EXPECT_EQ(curve.nColor, 16);
    EXPECT_EQ(curve.nSymbolShape, static_cast<int>(SymbolShape::kCircle));
  }
  EXPECT_NE(GraphNo(1).curves[0].ShowLine, GraphNo(1).curves[1].ShowLine);
}

TEST_F(DialogsOfAGraph, OnlyCurvesOfDataHaveSymbols) {
  DoublePress(1, true);
  EXPECT_FALSE(Find<QComboBox>("contentsColor")->isEnabled());
  Click(available(), 2);  // a curve of the model
  Press("contentsToGraph");
  EXPECT_TRUE(Find<QComboBox>("contentsColor")->isEnabled());
  EXPECT_FALSE(Find<QCheckBox>("contentsSymbol")->isEnabled());
  EXPECT_EQ(Find<QComboBox>("contentsSize")->currentIndex(), -1);
}

TEST_F(DialogsOfAGraph, GoWithTheirGraph) {
  DoublePress(1, true);
  CloseGraphWindow(desk, GraphNo(1));
  Settle();
  EXPECT_EQ(Find<QWidget>("contents"), nullptr);
  EXPECT_EQ(desk.graphDialogs.contentsOf, 0u);
}

}  // namespace
}  // namespace kalvex
