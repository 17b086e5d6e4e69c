// Updates widgets to show the records. Only differences are written, so nothing flickers and typed text is kept.
#pragma once

#include <QAbstractButton>
#include <QGroupBox>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kalvex {

QString QtText(std::string_view utf8);

void ShowText(QLabel& label, std::string_view text);
void ShowText(QLineEdit& field, std::string_view text);
void ShowText(QAbstractButton& button, std::string_view text);
void ShowText(QGroupBox& group, std::string_view title);
void ShowTick(QAbstractButton& button, bool ticked);

// A row of a list: the texts of its columns separated by tabs, and a square of a colour (0xRRGGBB) in front of them.
struct ShownRow {
  std::string text;
  bool selected = false;
  std::optional<std::uint32_t> spot{};
};
// Replaces the rows. The list sends no signals meanwhile.
void ShowRows(QTreeWidget& list, const std::vector<ShownRow>& rows);
// A list without tree branches; several rows can be selected. Without heads it has one column.
QTreeWidget* NewList(const char* name, const QStringList& heads = {});
bool IsRowSelected(const QTreeWidget& list, std::size_t row);

// A square of one colour.
QIcon ColorSpot(std::uint32_t rgb);

}  // namespace kalvex
