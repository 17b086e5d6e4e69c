// Bringing widgets to what records say. Only what differs from what is shown changes, so that nothing flickers, and
// nothing that a person is typing is lost.
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

// A row of a list: the texts of its columns with a tab between them, and a spot of a colour (0xRRGGBB) before them.
struct ShownRow {
  std::string text;
  bool selected = false;
  std::optional<std::uint32_t> spot{};
};
// The list keeps its signals to itself meanwhile.
void ShowRows(QTreeWidget& list, const std::vector<ShownRow>& rows);
// A list without branches, of which several rows can be selected. Without heads it has one column.
QTreeWidget* NewList(const char* name, const QStringList& heads = {});
bool IsRowSelected(const QTreeWidget& list, std::size_t row);

// A square of a colour.
QIcon ColorSpot(std::uint32_t rgb);

}  // namespace kalvex
