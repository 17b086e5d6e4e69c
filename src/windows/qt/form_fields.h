// The controls of a dialog that edits a record: each shows one member and writes it.
#pragma once

#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>
#include <functional>
#include <string>
#include <vector>

#include "windows/qt/show.h"

namespace kalvex {

class FormFields {
 public:
  // changed: is called after each edit.
  explicit FormFields(std::function<void()> changed) : changed_(std::move(changed)) {}

  // The members must outlive the controls. The widget whose layout receives a control owns it.
  QLineEdit* Text(const QString& name, std::string& text);
  QCheckBox* Tick(const QString& name, const char* words, bool& ticked);
  // One radio button of a group with the same parent.
  template <class Choice>
  QRadioButton* Radio(const QString& name, const char* words, Choice& choice, Choice value) {
    auto* const button = new QRadioButton(words);
    button->setObjectName(name);
    QObject::connect(button, &QRadioButton::clicked, button, [this, &choice, value] {
      choice = value;
      changed_();
    });
    refresh_.push_back([button, &choice, value] {
      if (choice == value) ShowTick(*button, true);
    });
    return button;
  }

  // Shows the present members in all controls.
  void Refresh() const;

 private:
  std::function<void()> changed_;
  std::vector<std::function<void()>> refresh_;
};

}  // namespace kalvex
