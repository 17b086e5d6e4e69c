// A toolkit and a process whose locale has a decimal comma.
#include <QLabel>
#include <QLocale>
#include <clocale>

#include "windows/main_window.h"
#include "windows/qt/on_screen.h"

namespace kalvex {
namespace {

class WithADecimalComma : public OnScreen {
 protected:
  WithADecimalComma() {
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    std::setlocale(LC_ALL, "de_DE.UTF-8");  // if this machine has it; the toolkit has its own
    folder.Write("R_a.dat", "100.5 0.5 0.01\n500.25 0.4 0.01\n900.75 0.6 0.01\n");
    Run("LoadDataset(DatasetNo=1,MasterFile=\"R_a.dat\");NewModel();"
        "SetModelParam(ModelNo=1,ParamName=\"Einf\",Value=3.25);");
  }
  ~WithADecimalComma() override {
    std::setlocale(LC_ALL, "C");
    QLocale::setDefault(QLocale::c());
  }
  std::string LabelText(const char* label) { return Find<QLabel>(label)->text().toStdString(); }
  static bool HasPoint(const std::string& text) {
    return text.find('.') != std::string::npos && text.find(',') == std::string::npos;
  }
};

TEST_F(WithADecimalComma, TheManagerShowsAndReadsPoints) {
  ChooseCommand(desk, MainCommand::kDatasetManager);
  Settle();
  EXPECT_EQ(FieldText("managerCutMin1"), "100.5");
  EXPECT_EQ(FieldText("managerCutMax1"), "900.75");
  Type("managerCutMin1", "499.5");
  EXPECT_EQ(DatasetInSlot(datasets, 1)->CutMin, 499.5);
  EXPECT_EQ(FieldText("managerPoints1"), "2");
  Press("managerButton2");
  EXPECT_EQ(FieldText("loadYErrVal"), "0.01");
}

TEST_F(WithADecimalComma, TheFitShowsAndReadsPoints) {
  Run("WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1,Weight=1.5);");
  EXPECT_TRUE(HasPoint(LabelText("fitChiSq"))) << LabelText("fitChiSq");
  auto& terms = *Find<QTreeWidget>("fitTerms");
  EXPECT_EQ(terms.topLevelItem(0)->text(1), "1.5");
  EXPECT_TRUE(HasPoint(terms.topLevelItem(0)->text(2).toStdString()));
  Click(terms, 0);
  Type("fitWeight", "2.5");
  EXPECT_EQ(fit.list.terms[0].weight, 2.5);
  Press("fitOptionsButton");
  EXPECT_EQ(FieldText("reductionAmount"), "0.001");
  Type("initialLambda", "0.25");
  Press("fitOptionsOk");
  EXPECT_EQ(fit.options.InitialLambda, 0.25);
}

TEST_F(WithADecimalComma, AGraphShowsAndReadsPoints) {
  Run("NewGraph(Width=500,Height=400);GraphProperties(GraphNo=1,Xmin=0.5,Xmax=2.5);");
  session.SetGraphReader(true).Ignore();
  QTest::mouseMove(keeper.graphWidget(1), QPoint(200, 100));
  QTest::qWait(20);
  EXPECT_TRUE(HasPoint(keeper.graphWidget(1)->windowTitle().toStdString()));
  QTest::mouseDClick(keeper.graphWidget(1), Qt::LeftButton, {}, QPoint(5, 5));
  Settle();
  EXPECT_EQ(FieldText("propertiesXMin"), "0.5");
  Type("propertiesXMax", "7.75");
  Press("propertiesApply");
  EXPECT_EQ(GraphNo(1).X.max, 7.75);
  EXPECT_EQ(FieldText("propertiesXMax"), "7.75");
}

TEST_F(WithADecimalComma, AModelShowsPoints) {
  QStringList fields;
  for (const QLineEdit* const field : keeper.modelWidget(1)->findChildren<QLineEdit*>()) fields << field->text();
  for (const QLabel* const label : keeper.modelWidget(1)->findChildren<QLabel*>()) fields << label->text();
  EXPECT_TRUE(fields.join(' ').contains("3.25")) << fields.join(' ').toStdString();
}

}  // namespace
}  // namespace kalvex
