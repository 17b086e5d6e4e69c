// The model that a widget shows.
#pragma once

#include "windows/model_window.h"
#include "windows/qt/fields.h"
#include "windows/qt/keeper.h"

namespace kalvex {

// Identified by its number, because the model may be closed when an event arrives.
struct ShownModel {
  Keeper& keeper;
  std::uint32_t number;

  const Model* Get() const { return keeper.session().FindModel(number); }
  ModelWindow& Window() const { return keeper.desk().models[number]; }
  // Calls a function with the model if it still exists, and updates the screen.
  template <class Deed>
  void Do(Deed deed) const {
    Keeper& whose = keeper;  // the widget that owns this may be deleted meanwhile
    if (const Model* const model = Get()) deed(whose.desk(), *model);
    whose.Reconcile();
  }
  void Press(ModelButton button) const {
    Do([button](Desk& desk, const Model& model) { PressModelButton(desk, model, button); });
  }
  QPushButton* NewButton(const char* text, const char* objectName, ModelButton button) const {
    QPushButton* const made = SmallButton(text, objectName);
    QObject::connect(made, &QPushButton::clicked, made, [shown = *this, button] { shown.Press(button); });
    return made;
  }
};

}  // namespace kalvex
