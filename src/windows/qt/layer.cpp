#include <xcb/xcb.h>

#include <QApplication>
#include <clocale>
#include <cstdio>
#include <cstdlib>

#include "app/window_entry.h"
#include "macro/run_macro.h"
#include "windows/qt/icons.h"
#include "windows/qt/keeper.h"
#include "windows/qt/qt_platform.h"

namespace kalvex {
namespace {

// The toolkit ends the process where it finds no screen, so this looks before. Who names a kind of screen to the
// toolkit knows that there is one.
bool ScreenAnswers() {
  const char* const kind = std::getenv("QT_QPA_PLATFORM");
  if (kind && *kind) return true;
  xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
  const bool answers = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return answers;
}

int Run(Program& program, const char* macroFile) {
  Keeper keeper(program);
  program.platform = QtPlatform(keeper);
  if (*macroFile) {
    const int result = RunMacro(program, macroFile);
    if (result < 0) std::fprintf(stderr, "%s\n", program.macro.fault.c_str());
    if (result == 1) return 0;
  }
  keeper.Reconcile();
  return program.mainWindow.quit ? 0 : QCoreApplication::exec();
}

}  // namespace
}  // namespace kalvex

constexpr int kGraphPicture = 2;  // a sheet of its own, seen on any ground

int KalvexRunWindows(kalvex::Program& program, const char* macroFile, int argc, char** argv) {
  if (!kalvex::ScreenAnswers()) return -1;
  QApplication application(argc, argv);
  // Numbers in files and on the screen have a point everywhere; the toolkit has set the user's locale.
  std::setlocale(LC_NUMERIC, "C");
  QLocale::setDefault(QLocale::c());
  QApplication::setWindowIcon(kalvex::ToolIcon(kGraphPicture, Qt::white));
  const int status = kalvex::Run(program, macroFile);
  program.platform = kalvex::HeadlessPlatform();
  return status;
}
