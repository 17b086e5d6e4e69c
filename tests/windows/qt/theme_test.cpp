// Everything is readable with a dark theme, too.
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QToolBar>
#include <cmath>

#include "windows/main_window.h"
#include "windows/qt/on_screen.h"

namespace kalvex {
namespace {

QPalette DarkPalette() {
  QPalette dark(QColor(52, 52, 56), QColor(40, 40, 44));
  dark.setColor(QPalette::Base, QColor(28, 28, 30));
  dark.setColor(QPalette::AlternateBase, QColor(34, 34, 38));
  dark.setColor(QPalette::Highlight, QColor(42, 100, 170));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::HighlightedText}) {
    dark.setColor(role, QColor(230, 230, 230));
    dark.setColor(QPalette::Disabled, role, QColor(120, 120, 120));
  }
  return dark;
}

// Relative luminance of sRGB (weights of ITU-R BT.709), and the contrast of two luminances, 1 to 21.
double Luminance(const QColor& color) {
  const auto linear = [](double v) { return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}
double Contrast(const QColor& a, const QColor& b) {
  const double x = Luminance(a), y = Luminance(b);
  return (std::max(x, y) + 0.05) / (std::min(x, y) + 0.05);
}

constexpr double kReadable = 4.5;  // of texts in usual sizes
constexpr double kVisible = 3;     // of pictures

// The highest contrast between a pixel of an image and the most frequent colour.
double ContrastWithin(const QImage& image) {
  std::map<QRgb, int> counts;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) ++counts[image.pixel(x, y)];
  }
  if (counts.empty()) return 0;
  const auto ground =
      std::max_element(counts.begin(), counts.end(), [](const auto& a, const auto& b) { return a.second < b.second; });
  double best = 0;
  for (const auto& [rgb, count] : counts) best = std::max(best, Contrast(QColor(rgb), QColor(ground->first)));
  return best;
}

class UnderADarkTheme : public OnScreen {
 protected:
  UnderADarkTheme() {
    before = QApplication::palette();
    QApplication::setPalette(DarkPalette());  // while windows are open
    Settle();
  }
  ~UnderADarkTheme() override { QApplication::setPalette(before); }

  static QString TextOf(const QWidget& widget) {
    if (const auto* const label = qobject_cast<const QLabel*>(&widget)) return label->text().trimmed();
    if (const auto* const button = qobject_cast<const QAbstractButton*>(&widget)) return button->text().trimmed();
    if (const auto* const field = qobject_cast<const QLineEdit*>(&widget)) return field->text().trimmed();
    if (const auto* const box = qobject_cast<const QComboBox*>(&widget)) return box->currentText().trimmed();
    return {};
  }
  // Every visible text of enabled widgets, as it is painted.
  static int ExpectReadable(const char* window) {
    constexpr int kEdge = 3;  // lines around a field are no text
    int texts = 0;
    for (QWidget* const widget : Find<QWidget>(window)->findChildren<QWidget*>()) {
      if (!widget->isVisible() || !widget->isEnabled() || TextOf(*widget).isEmpty()) continue;
      const QRect inside = widget->rect().adjusted(kEdge, kEdge, -kEdge, -kEdge);
      if (inside.isEmpty()) continue;
      EXPECT_GE(ContrastWithin(widget->grab(inside).toImage()), kReadable)
          << window << ": " << TextOf(*widget).toStdString();
      ++texts;
    }
    for (const QGroupBox* const group : Find<QWidget>(window)->findChildren<QGroupBox*>()) {
      if (!group->isEnabled()) continue;
      EXPECT_GE(Contrast(group->palette().windowText().color(), group->palette().window().color()), kReadable)
          << group->title().toStdString();
    }
    return texts;
  }

  QPalette before;
};

TEST_F(UnderADarkTheme, TheTextsOfTheFitAndItsDialogsCanBeRead) {
  folder.Write("R_a.dat", "100 0.5\n500 0.4\n900 0.6\n");
  Run("LoadDataset(DatasetNo=1,MasterFile=\"R_a.dat\");NewModel();WindowFit();AddChiSqTerm(DatasetNo=1,ModelNo=1);");
  EXPECT_GE(ExpectReadable("fit"), 12);
  EXPECT_GE(ContrastWithin(Find<QTreeWidget>("fitTerms")->viewport()->grab().toImage()), kReadable);
  Press("fitOptionsButton");
  EXPECT_GE(ExpectReadable("fitOptions"), 15);
  Press("fitOptionsCancel");
  Press("fitAdd");
  EXPECT_GE(ExpectReadable("addTerms"), 5);
}

TEST_F(UnderADarkTheme, TheTextsOfTheManagerAndTheLoadDialogCanBeRead) {
  folder.Write("R_a.dat", "100 0.5\n500 0.4\n900 0.6\n");
  Run("LoadDataset(DatasetNo=1,MasterFile=\"R_a.dat\");DatasetManager();");
  EXPECT_GE(ExpectReadable("datasetManager"), 20);
  Press("managerButton2");
  EXPECT_GE(ExpectReadable("loadDialog"), 11);
}

TEST_F(UnderADarkTheme, TheTextsOfAGraphsDialogsCanBeRead) {
  Run("NewModel();NewGraph(Width=500,Height=400);AddModelCurve(GraphNo=1,ModelNo=1,Quantity=\"R\");");
  QTest::mouseDClick(keeper.graphWidget(1), Qt::LeftButton, {}, QPoint(5, 5));
  Settle();
  EXPECT_GE(ExpectReadable("properties"), 10);
  Press("propertiesCancel");
  QTest::mouseDClick(keeper.graphWidget(1), Qt::LeftButton, {}, QPoint(200, 100));
  Settle();
  EXPECT_GE(ExpectReadable("contents"), 30);
}

// The fraction of a picture's pixels that are visible against the background.
double ShareSeen(const QImage& picture, const QColor& ground) {
  int drawn = 0, seen = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const QColor color = picture.pixelColor(x, y);
      if (color.alpha() < 200) continue;  // the soft edges of lines
      ++drawn;
      seen += Contrast(color, ground) >= kVisible;
    }
  }
  return drawn == 0 ? 0 : static_cast<double>(seen) / drawn;
}

TEST_F(UnderADarkTheme, TheToolbarIsDrawnAnewAndSeen) {
  const auto expectSeen = [&](const char* theme) {
    auto* const bar = keeper.mainWidget()->findChild<QToolBar*>();
    const QColor ground = bar->palette().color(QPalette::Window);
    for (const QAction* const action : bar->actions()) {
      EXPECT_GE(ShareSeen(action->icon().pixmap(24).toImage(), ground), 0.2)
          << theme << ": " << action->text().toStdString();
    }
  };
  expectSeen("dark");
  QApplication::setPalette(before);
  Settle();
  expectSeen("light");
}

}  // namespace
}  // namespace kalvex
