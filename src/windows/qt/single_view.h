// Windows that exist once. They are made when first opened and hidden while their record is closed, so no handler of a
// button deletes its own window.
#pragma once

#include <QDialog>
#include <functional>

class QPushButton;

namespace kalvex {

class Keeper;

// Pointers to members of a window's record.
struct WindowPlace {
  const bool& open;
  int& x;
  int& y;
  bool& wantsFront;
  int* width = nullptr;  // null for a window that computes its own size
  int* height = nullptr;
};

// A separate window with the position and size of its record. When the user moves it, the record is updated.
class SingleView : public QWidget {
 public:
  // close: the action of the window's cross on the record.
  SingleView(Keeper& keeper, const char* name, WindowPlace place, std::function<void()> close);

 protected:
  // Opens, moves, resizes, raises or hides the window. Returns whether it is open.
  bool ShowPlace();
  void moveEvent(QMoveEvent*) override;
  void resizeEvent(QResizeEvent*) override;
  void closeEvent(QCloseEvent*) override;

  Keeper& keeper_;

 private:
  WindowPlace place_;
  std::function<void()> close_;
};

// The actions of a dialog's buttons on its record. "Enter" presses "OK"; Esc and the cross press "Cancel".
struct ModalActions {
  std::function<void()> ok;
  std::function<void()> cancel;
  std::function<void()> apply{};  // empty: there is no such button
};

// A modal dialog over its owner. All other windows stay usable.
class ModalView : public QDialog {
 public:
  ModalView(Keeper& keeper, QWidget& owner, const char* name, ModalActions actions);

 protected:
  void ShowOpen(bool open);
  // The row of buttons, with object names made of the dialog's name and "Ok", "Cancel", "Apply".
  QLayout* ButtonRow(const char* ok, const char* cancel);
  void accept() override;
  void reject() override;

  Keeper& keeper_;

 private:
  QPushButton* NewButton(const char* suffix, const char* text, const std::function<void()>& action);

  ModalActions actions_;
};

}  // namespace kalvex
