#include "windows/qt/main_view.h"

#include <QApplication>
#include <QCloseEvent>
#include <QMenuBar>
#include <QMessageBox>
#include <QToolBar>
#include <QWindow>
#include <utility>

#include "windows/main_window.h"
#include "windows/qt/icons.h"
#include "windows/qt/keeper.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kAboutIcon = 48;

}  // namespace

MainView::MainView(Keeper& keeper) : keeper_(keeper) {
  std::map<std::string, QMenu*> menus;
  for (const texts::MenuItemText& item : texts::kMenuItems) {
    QMenu*& menu = menus[item.menu];
    if (!menu) menu = menuBar()->addMenu(item.menu);
    AddCommand(menu->addAction(item.item), item.command);
  }
  setContextMenuPolicy(Qt::PreventContextMenu);  // its menu could hide the toolbar permanently
  bar_ = addToolBar(texts::kMainTitle);
  bar_->setMovable(false);
  for (const texts::ToolButtonText& button : texts::kToolButtons) {
    AddCommand(bar_->addAction(button.tip), button.command);
  }
  DrawIcons();
  keeper.TakeStepKeys(*this);
  placed_ = PlaceInRecord();
  resize(placed_.size());
  show();
}

void MainView::AddCommand(QAction* action, int command) {
  actions_.emplace(command, action);
  const auto of = static_cast<MainCommand>(command);
  action->setCheckable(of == MainCommand::kAutoUpdate || of == MainCommand::kGraphReader);
  QObject::connect(action, &QAction::triggered, this, [this, of] {
    ChooseCommand(keeper_.desk(), of);
    keeper_.Reconcile();
  });
}

void MainView::DrawIcons() {
  const QColor ground = palette().color(QPalette::Window);
  for (std::size_t k = 0; k < texts::kToolButtons.size(); ++k) {
    bar_->actions()[static_cast<qsizetype>(k)]->setIcon(ToolIcon(texts::kToolButtons[k].bitmap, ground));
  }
}

QAction* MainView::actionOf(int command) const {
  const auto found = actions_.find(command);
  return found == actions_.end() ? nullptr : found->second;
}

// The box has no event loop of its own, so a run of the fit continues while it is open.
void MainView::ShowAbout() {
  const bool open = keeper_.desk().mainWindow.about;
  if (!open || about_) return;
  const auto lines = AboutLines(KALVEX_VERSION, KALVEX_UPDATED);
  about_ = new QMessageBox(QMessageBox::NoIcon, texts::kAboutTitle,
                           QString::fromStdString(lines[0] + '\n' + lines[1] + '\n' + lines[2]), QMessageBox::Ok, this);
  about_->setIconPixmap(windowIcon().pixmap(kAboutIcon));
  about_->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(about_, &QMessageBox::finished, this, [this] { CloseAbout(keeper_.desk()); });
  about_->open();
}

QRect MainView::PlaceInRecord() const {
  const MainWindow& record = keeper_.desk().mainWindow;
  return {record.x, record.y, record.width, record.height};
}

void MainView::NotePlace() {
  MainWindow& record = keeper_.desk().mainWindow;
  // A macro has moved the window, but the screen has not followed yet.
  if (PlaceInRecord() != placed_ || keeper_.IsReconciling()) return;
  record.x = x();
  record.y = y();
  record.width = width();
  record.height = height();
  placed_ = PlaceInRecord();
}

void MainView::moveEvent(QMoveEvent*) { NotePlace(); }

void MainView::resizeEvent(QResizeEvent* event) {
  QMainWindow::resizeEvent(event);
  NotePlace();
}

void MainView::FollowRecord() {
  if (PlaceInRecord() != placed_) {
    placed_ = PlaceInRecord();
    asked_ = placed_.topLeft();
    move(*asked_);
    resize(placed_.size());
  }
  // A window without its frame is positioned without it, so the frame would lie above the requested position.
  if (!asked_ || windowHandle()->frameMargins().isNull()) return;
  move(*std::exchange(asked_, std::nullopt));
}

void MainView::Refresh() {
  const MainWindow& record = keeper_.desk().mainWindow;
  const Session& session = keeper_.session();
  FollowRecord();
  setWindowTitle(QString::fromStdString(record.title));
  for (const auto& [command, action] : actions_) {
    action->setEnabled(CommandAnswers(session, static_cast<MainCommand>(command)));
    if (action->isCheckable()) action->setChecked(CommandIsOn(session, static_cast<MainCommand>(command)));
  }
  ShowAbout();
  // Exits without a question; no other window can refuse to close.
  if (record.quit) QCoreApplication::exit();
}

void MainView::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) DrawIcons();
}

void MainView::closeEvent(QCloseEvent* event) {
  event->accept();
  CloseMainWindow(keeper_.desk());
  keeper_.Reconcile();
}

}  // namespace kalvex
