// Windows of which there is one: made when they are first opened, hidden while their record is closed. So none is ever
// deleted by what its own button does.
#pragma once

#include <QDialog>
#include <functional>

class QPushButton;

namespace kalvex {

class Keeper;

// Members of a window's record.
struct WindowPlace {
  const bool& open;
  int& x;
  int& y;
  bool& wantsFront;
  int* width = nullptr;  // null for a window that finds its size by itself
  int* height = nullptr;
};

// A window of its own. It lies where its record says, as large as that says, and the record follows the user's hand.
class SingleView : public QWidget {
 public:
  // close: what the cross of the window does to the record.
  SingleView(Keeper& keeper, const char* name, WindowPlace place, std::function<void()> close);

 protected:
  // Opens, moves, sizes, brings to the front or hides the window. Gives whether it is open.
  bool ShowPlace();
  void moveEvent(QMoveEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  void closeEvent(QCloseEvent*) override;

  Keeper& keeper_;

 private:
  WindowPlace place_;
  std::function<void()> close_;
};

// What the buttons of a dialog do to its record. "Enter" presses "OK"; Esc and the cross are "Cancel".
struct ModalActions {
  std::function<void()> ok;
  std::function<void()> cancel;
  std::function<void()> apply{};  // none: there is no such button
};

// A modal dialog over its owner; all other windows answer meanwhile.
class ModalView : public QDialog {
 public:
  ModalView(Keeper& keeper, QWidget& owner, const char* name, ModalActions actions);

 protected:
  void ShowOpen(bool open);
  // The buttons at the foot, named as the dialog with "Ok", "Cancel" and "Apply".
  QLayout* ButtonRow(const char* ok, const char* cancel);
  void accept() override;
  void reject() override;

  Keeper& keeper_;

 private:
  QPushButton* NewButton(const char* suffix, const char* text, const std::function<void()>& action);

  ModalActions actions_;
};

}  // namespace kalvex
