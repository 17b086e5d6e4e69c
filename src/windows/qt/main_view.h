// The main window: menu and toolbar.
#pragma once

#include <QMainWindow>
#include <QPointer>
#include <map>
#include <optional>

class QMessageBox;
class QToolBar;

namespace kalvex {

class Keeper;

class MainView : public QMainWindow {
 public:
  explicit MainView(Keeper& keeper);
  void Refresh();
  // The button or menu entry of a command; null if there is none.
  QAction* actionOf(int command) const;

 protected:
  void changeEvent(QEvent*) override;
  void closeEvent(QCloseEvent*) override;
  void moveEvent(QMoveEvent*) override;
  void resizeEvent(QResizeEvent*) override;

 private:
  void AddCommand(QAction* action, int command);
  // Draws the icons in colours that are visible on the toolbar.
  void DrawIcons();
  void ShowAbout();
  QRect PlaceInRecord() const;
  void FollowRecord();
  // Stores the position to which the user has moved the window.
  void NotePlace();

  Keeper& keeper_;
  QToolBar* bar_ = nullptr;
  std::multimap<int, QAction*> actions_;
  QPointer<QMessageBox> about_;
  std::optional<QPoint> asked_;  // the position set by a macro, until the window is there
  QRect placed_;                 // the last position taken from the record; the system chooses the first one
};

}  // namespace kalvex
