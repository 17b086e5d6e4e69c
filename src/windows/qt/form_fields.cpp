#include "windows/qt/form_fields.h"

namespace kalvex {

QLineEdit* FormFields::Text(const QString& name, std::string& text) {
  auto* const field = new QLineEdit;
  field->setObjectName(name);
  QObject::connect(field, &QLineEdit::textEdited, field, [this, &text](const QString& typed) {
    text = typed.toStdString();
    changed_();
  });
  refresh_.push_back([field, &text] { ShowText(*field, text); });
  return field;
}

QCheckBox* FormFields::Tick(const QString& name, const char* words, bool& ticked) {
  auto* const box = new QCheckBox(words);
  box->setObjectName(name);
  QObject::connect(box, &QCheckBox::clicked, box, [this, &ticked](bool now) {
    ticked = now;
    changed_();
  });
  refresh_.push_back([box, &ticked] { ShowTick(*box, ticked); });
  return box;
}

void FormFields::Refresh() const {
  for (const auto& refresh : refresh_) refresh();
}

}  // namespace kalvex
