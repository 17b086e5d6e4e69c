#include <gtest/gtest.h>

#include <QApplication>
#include <clocale>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);  // the toolkit's own dialogs can be controlled by tests
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  std::setlocale(LC_NUMERIC, "C");
  QLocale::setDefault(QLocale::c());
  return RUN_ALL_TESTS();
}
