#include "windows/qt/qt_platform.h"

#include <QApplication>
#include <QCheckBox>
#include <QDesktopServices>
#include <QDialog>
#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QThread>
#include <QUrl>
#include <QVBoxLayout>

#include "windows/qt/keeper.h"
#include "windows/suspend_dialog.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

QString Text(std::string_view utf8) { return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())); }

// A file name without extension gets the default one, unless a file with exactly that name exists.
class FileDialog : public QFileDialog {
 public:
  FileDialog(QWidget* owner, const FileQuestion& question, const std::string& folder)
      : QFileDialog(owner, question.title, QFile::decodeName(folder.c_str())), extension_(question.defaultExtension) {
    setObjectName("file");
    setOptions(DontConfirmOverwrite | HideNameFilterDetails);
    setAcceptMode(question.forSaving ? AcceptSave : AcceptOpen);
    setFileMode(question.forSaving ? AnyFile : ExistingFile);
    QStringList rows;
    for (const FileFilter& filter : question.filters) {
      // The description of the filter, then its pattern in lower and upper case, which is not shown.
      const QString pattern = filter.pattern;
      rows << QString(filter.text) + '(' + (pattern == "*.*" ? "*" : pattern + ' ' + pattern.toUpper()) + ')';
    }
    setNameFilters(rows);
  }

 protected:
  void accept() override {
    setDefaultSuffix({});
    const QStringList chosen = selectedFiles();
    if (!chosen.isEmpty() && !QFile::exists(chosen.front())) setDefaultSuffix(extension_);
    QFileDialog::accept();
  }

 private:
  QString extension_;
};

}  // namespace

void QtPlatform::ShowMessage(std::string_view title, std::string_view text) {
  keeper_.Reconcile();
  QMessageBox(QMessageBox::Warning, Text(title), Text(text), QMessageBox::Ok, keeper_.mainWidget()).exec();
}

void QtPlatform::PumpEvents() {
  keeper_.ReconcileNowAndThen();
  QCoreApplication::processEvents();
}

// The windows keep working while a macro waits.
void QtPlatform::Sleep(int milliseconds) {
  keeper_.Reconcile();
  QElapsedTimer timer;
  timer.start();
  while (timer.elapsed() < milliseconds && !keeper_.desk().mainWindow.quit) {
    const qint64 left = milliseconds - timer.elapsed();
    QCoreApplication::processEvents(QEventLoop::AllEvents, static_cast<int>(left));
    QThread::msleep(static_cast<unsigned long>(std::clamp<qint64>(left, 0, 10)));
  }
}

SuspendAnswer QtPlatform::AskSuspend() {
  keeper_.Reconcile();
  SuspendDialog& record = keeper_.desk().suspendDialog;
  OpenSuspendDialog(record);
  QDialog dialog(keeper_.mainWidget());
  dialog.setObjectName("suspend");
  dialog.setWindowTitle(texts::kSuspendTitle);
  auto* const layout = new QVBoxLayout(&dialog);
  layout->addWidget(new QLabel(texts::kSuspendQuestion));
  auto* const goOn = new QPushButton(texts::kSuspendContinue);
  auto* const leave = new QPushButton(texts::kSuspendExit);
  auto* const never = new QCheckBox(texts::kSuspendNever);
  for (QWidget* const widget :
       {static_cast<QWidget*>(goOn), static_cast<QWidget*>(leave), static_cast<QWidget*>(never)}) {
    layout->addWidget(widget);
  }
  QObject::connect(goOn, &QPushButton::clicked, [&] {
    record.neverAgain = never->isChecked();
    PressContinue(record);
  });
  QObject::connect(leave, &QPushButton::clicked, [&] { PressExitMacro(record); });
  dialog.adjustSize();
  const QPoint centred = dialog.screen()->availableGeometry().center() - dialog.rect().center();
  dialog.move(record.placed ? QPoint(record.x, record.y) : centred);
  dialog.show();
  while (record.open && !keeper_.desk().mainWindow.quit) {
    if (!dialog.isVisible()) PressContinue(record);  // closed by the cross of the window
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  PlaceSuspendDialog(record, dialog.x(), dialog.y());
  return AnswerOf(record);
}

std::optional<std::string> QtPlatform::AskFile(const FileQuestion& question, const std::string& folder) {
  FileDialog dialog(keeper_.mainWidget(), question, folder);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return QFile::encodeName(dialog.selectedFiles().front()).toStdString();
}

std::string QtPlatform::ProgramFolder() {
  return QFile::encodeName(QCoreApplication::applicationDirPath() + '/').toStdString();
}

// If no program can open the document, the toolkit would print a message on standard error.
void QtPlatform::OpenDocument(const std::string& path) {
  const QString file = QFile::decodeName(path.c_str());
  if (!QFile::exists(file)) return;
  const auto before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  QDesktopServices::openUrl(QUrl::fromLocalFile(file));
  qInstallMessageHandler(before);
}

}  // namespace kalvex
