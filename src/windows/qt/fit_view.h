// The fit window.
#pragma once

#include <QTreeWidget>
#include <array>

#include "windows/qt/single_view.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace kalvex {

class AddTermsView;
class FitOptionsView;
struct Desk;

class FitView : public SingleView {
 public:
  explicit FitView(Keeper& keeper);
  void Refresh();

 protected:
  void resizeEvent(QResizeEvent*) override;

 private:
  QLayout* ControlPanel();
  QLayout* Values();
  QWidget* Details();
  QPushButton* NewButton(const char* name, const char* text, void (*press)(Desk&));
  void SelectTerms();
  void ShowValuesOfRun();
  void ShowControls();
  void ShowFold();
  void ShowTerms();
  void ShowDialogs();

  std::array<QLabel*, 6> values_;
  QPushButton* start_;
  QPushButton* undo_;
  QPushButton* options_;
  QPushButton* fold_;
  QWidget* details_;
  QTreeWidget* terms_;
  QLineEdit* weight_;
  QPushButton* add_;
  QPushButton* remove_;
  AddTermsView* addTerms_ = nullptr;
  FitOptionsView* fitOptions_ = nullptr;
};

}  // namespace kalvex
