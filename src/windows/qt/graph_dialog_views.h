// The two dialogs of a graph.
#pragma once

#include <QComboBox>
#include <QTreeWidget>
#include <array>
#include <functional>

#include "windows/graph_window.h"
#include "windows/qt/form_fields.h"
#include "windows/qt/single_view.h"

namespace kalvex {

class SymbolView;

class PropertiesView : public ModalView {
 public:
  // owner: the window of the graph.
  PropertiesView(Keeper& keeper, QWidget& owner);
  void Refresh(bool open);

 private:
  QWidget* AxisGroup(const char* title, const QString& name, AxisForm& axis);

  FormFields fields_;
};

class ContentsView : public ModalView {
 public:
  ContentsView(Keeper& keeper, QWidget& owner);
  void Refresh(bool open);

 private:
  QWidget* Filters();
  template <class Enum>
  QWidget* FilterGroup(const char* title, const QString& name, int columns, EnumArray<Enum, bool>& ticks,
                       const EnumArray<Enum, const char*>& words);
  QLayout* Lists();
  QWidget* CurveGroup();
  QCheckBox* LookTick(const char* name, const char* words, std::optional<bool> CurveLook::*field);
  QComboBox* LookChoice(const char* name, std::optional<int> CurveLook::*field);
  QLineEdit* LookNumber(const char* name, std::string CurveLook::*field);
  // Changes the look of the selected curves after an action in one of its controls.
  void EditLook(const std::function<void(CurveLook&)>& edit);
  void Offer();
  void ShowLists();
  void ShowLook();

  GraphContents& record_;
  std::vector<std::function<void()>> filters_;  // update the check boxes of the filters
  QTreeWidget* available_;
  QTreeWidget* chosen_;
  QComboBox* color_;
  QComboBox* size_;
  QComboBox* shape_;
  QCheckBox* line_;
  QCheckBox* error_;
  QCheckBox* symbol_;
  QCheckBox* open_;
  QLineEdit* scale_;
  QLineEdit* shift_;
  SymbolView* picture_;
};

}  // namespace kalvex
