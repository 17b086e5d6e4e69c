#include <xcb/xcb.h>

#include <QApplication>
#include <QFile>
#include <QPluginLoader>
#include <clocale>
#include <cstdio>

#include "app/window_entry.h"
#include "macro/run_macro.h"
#include "windows/qt/icons.h"
#include "windows/qt/keeper.h"
#include "windows/qt/qt_platform.h"

namespace kalvex {
namespace {

// If the user has set the kind of screen for the toolkit, there is one.
bool IsKindNamed() { return !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"); }

// The toolkit ends the process if it finds no screen, so the program checks first.
bool ScreenAnswers() {
  if (IsKindNamed()) return true;
  xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
  const bool answers = xcb_connection_has_error(connection) == 0;
  xcb_disconnect(connection);
  return answers;
}

// The toolkit also ends the process if its plug-in for this kind of screen is not installed or cannot be loaded.
// Returns the reason; empty if the plug-in works.
QString MissingForTheScreen() {
  if (IsKindNamed()) return {};
  const QString part = "platforms/libqxcb.so";
  QStringList folders = QCoreApplication::libraryPaths();
  const QString ownFolder = qEnvironmentVariable("QT_QPA_PLATFORM_PLUGIN_PATH");
  if (!ownFolder.isEmpty()) folders = {ownFolder + "/.."};
  QString reason = part + " is not installed";
  for (const QString& folder : folders) {
    if (!QFile::exists(folder + '/' + part)) continue;
    QPluginLoader loader(folder + '/' + part);
    if (loader.load()) return {};
    reason = loader.errorString().simplified();
  }
  return reason;
}

int RunOn(Keeper& keeper, const char* macroFile) {
  Desk& desk = keeper.desk();
  if (*macroFile) {
    const int result = RunMacro(desk, macroFile);
    if (result < 0) std::fprintf(stderr, "%s\n", desk.macro.fault.c_str());
    if (result == 1) return 0;
  }
  keeper.Reconcile();
  return desk.mainWindow.quit ? 0 : QCoreApplication::exec();
}

int Run(Desk& desk, const char* macroFile) {
  Keeper keeper(desk);
  QtPlatform platform(keeper);
  Platform& before = desk.session.GetPlatform();
  desk.session.UsePlatform(platform);
  const int status = RunOn(keeper, macroFile);
  desk.session.UsePlatform(before);
  return status;
}

}  // namespace
}  // namespace kalvex

constexpr int kGraphPicture = 2;  // this icon is visible on any background

int KalvexRunWindows(kalvex::Desk& desk, const char* macroFile, int argc, char** argv, std::string& fault) {
  if (!kalvex::ScreenAnswers()) return -1;
  if (const QString missing = kalvex::MissingForTheScreen(); !missing.isEmpty()) {
    fault = kalvex::kNoWindows + missing.toStdString();
    return -1;
  }
  QApplication application(argc, argv);
  // Numbers in files and on the screen have a decimal point in every locale. The toolkit has set the user's locale.
  std::setlocale(LC_NUMERIC, "C");
  QLocale::setDefault(QLocale::c());
  QApplication::setWindowIcon(kalvex::ToolIcon(kGraphPicture, Qt::white));
  return kalvex::Run(desk, macroFile);
}
