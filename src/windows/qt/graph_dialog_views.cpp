#include "windows/qt/graph_dialog_views.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QPushButton>

#include "datasets/quantity.h"
#include "graphs/graph_table.h"
#include "windows/qt/keeper.h"
#include "windows/qt/symbol_view.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr int kNumberWidth = 90, kTitleWidth = 260;

PerQuantity<const char*> QuantityWords() {
  PerQuantity<const char*> words;
  for (const Quantity q : kEveryQuantity) words[q] = NamesOf(q).shortName;
  return words;
}

// A value that differs among the curves is shown as the third state. The user cannot choose that state.
void ShowLookTick(QCheckBox& box, const std::optional<bool>& value, bool any) {
  box.setTristate(any && !value);
  const Qt::CheckState state =
      value ? (*value ? Qt::Checked : Qt::Unchecked) : (any ? Qt::PartiallyChecked : Qt::Unchecked);
  if (box.checkState() != state) box.setCheckState(state);
}

std::vector<ShownRow> RowsOf(const std::vector<ListedCurve>& list, const Session& session, bool spots) {
  std::vector<ShownRow> rows;
  for (const ListedCurve& listed : list) {
    rows.push_back({CurveText(listed.curve, session.Datasets(), session.Params()), listed.selected});
    if (spots) rows.back().spot = ColorOf(listed.curve).rgb;
  }
  return rows;
}

}  // namespace

// ---- the dialog "Graph properties"

PropertiesView::PropertiesView(Keeper& keeper, QWidget& owner)
    : ModalView(keeper, owner, "properties",
                {[&keeper] { AcceptProperties(keeper.desk()); }, [&keeper] { CancelProperties(keeper.desk()); },
                 [&keeper] { ApplyProperties(keeper.desk()); }}),
      fields_([&keeper] { keeper.Reconcile(); }) {
  GraphPropertiesForm& form = keeper.desk().graphDialogs.properties;
  auto* const layout = new QVBoxLayout(this);
  layout->addWidget(AxisGroup(texts::kAxisGroups[0], "propertiesX", form.X));
  layout->addWidget(AxisGroup(texts::kAxisGroups[1], "propertiesY", form.Y));
  layout->addWidget(fields_.Tick("propertiesShowFitted", texts::kOnlyFitted, form.ShowFitted));
  layout->addLayout(ButtonRow(texts::kOk, texts::kCancel));
}

QWidget* PropertiesView::AxisGroup(const char* title, const QString& name, AxisForm& axis) {
  auto* const group = new QGroupBox(title);
  auto* const grid = new QGridLayout(group);
  QLineEdit* const min = fields_.Text(name + "Min", axis.min);
  QLineEdit* const max = fields_.Text(name + "Max", axis.max);
  QLineEdit* const words = fields_.Text(name + "Title", axis.title);
  for (QLineEdit* const number : {min, max}) number->setFixedWidth(kNumberWidth);
  words->setMinimumWidth(kTitleWidth);
  words->setMaxLength(static_cast<int>(kLongestTitle));
  grid->addWidget(new QLabel(texts::kRange), 0, 0);
  grid->addWidget(min, 0, 1);
  grid->addWidget(max, 0, 2);
  grid->addWidget(fields_.Tick(name + "Log", texts::kLogScale, axis.log), 0, 3);
  grid->addWidget(new QLabel(texts::kAxisTitle), 1, 0);
  grid->addWidget(words, 1, 1, 1, 3);
  grid->addWidget(fields_.Tick(name + "ShowTitle", texts::kShowTitle, axis.titleShown), 2, 1, 1, 3);
  grid->setColumnStretch(3, 1);
  return group;
}

void PropertiesView::Refresh(bool open) {
  if (open) {
    setWindowTitle(QtText(keeper_.desk().graphDialogs.properties.caption));
    fields_.Refresh();
  }
  ShowOpen(open);
}

// ---- the dialog "Graph contents"

ContentsView::ContentsView(Keeper& keeper, QWidget& owner)
    : ModalView(keeper, owner, "contents",
                {[&keeper] { AcceptContents(keeper.desk()); }, [&keeper] { CancelContents(keeper.desk()); },
                 [&keeper] { ApplyContents(keeper.desk()); }}),
      record_(keeper.desk().graphDialogs.contents) {
  auto* const layout = new QVBoxLayout(this);
  auto* const top = new QHBoxLayout;
  top->addWidget(Filters());
  top->addLayout(Lists(), 1);
  layout->addLayout(top, 1);
  layout->addWidget(CurveGroup());
  layout->addLayout(ButtonRow(texts::kOk, texts::kCancel));
}

template <class Enum>
QWidget* ContentsView::FilterGroup(const char* title, const QString& name, int columns, EnumArray<Enum, bool>& ticks,
                                   const EnumArray<Enum, const char*>& words) {
  auto* const group = new QGroupBox(title);
  auto* const grid = new QGridLayout(group);
  const auto add = [&](const QString& ending, const char* text, auto isTicked, auto tick) {
    auto* const box = new QCheckBox(text);
    box->setObjectName(name + ending);
    QObject::connect(box, &QCheckBox::clicked, this, [this, tick](bool now) {
      tick(now);
      Offer();
    });
    filters_.push_back([box, isTicked] { ShowTick(*box, isTicked()); });
    return box;
  };
  grid->addWidget(
      add(
          "All", texts::kAll, [&ticks] { return AllTicked(ticks); }, [&ticks](bool now) { ticks.fill(now); }),
      0, 0, 1, columns);
  for (int k = 0; k < std::ssize(ticks); ++k) {
    bool& tick = ticks[Enum{k}];
    const char* const word = words[Enum{k}];
    QCheckBox* const box = add(
        word, word, [&tick] { return tick; }, [&tick](bool now) { tick = now; });
    grid->addWidget(box, 1 + k / columns, k % columns);
  }
  return group;
}

QWidget* ContentsView::Filters() {
  auto* const filters = new QWidget;
  auto* const layout = new QVBoxLayout(filters);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(FilterGroup(texts::kCurveTypeGroup, "contentsKind", 2, record_.kinds, kCurveKindNames));
  layout->addWidget(FilterGroup(texts::kQuantityGroup, "contentsQuantity", 3, record_.quantities, QuantityWords()));
  layout->addStretch();
  return filters;
}

QLayout* ContentsView::Lists() {
  auto* const grid = new QGridLayout;
  available_ = NewList("contentsAvailable");
  chosen_ = NewList("contentsChosen");
  const auto follow = [this](QTreeWidget* list, void (*select)(GraphContents&, std::size_t, bool), std::size_t count) {
    for (std::size_t k = 0; k < count; ++k) select(record_, k, IsRowSelected(*list, k));
    keeper_.Reconcile();
  };
  QObject::connect(available_, &QTreeWidget::itemSelectionChanged, this,
                   [this, follow] { follow(available_, SelectAvailable, record_.available.size()); });
  QObject::connect(chosen_, &QTreeWidget::itemSelectionChanged, this,
                   [this, follow] { follow(chosen_, SelectChosen, record_.chosen.size()); });
  const auto button = [this](const char* name, const char* text, void (*press)(GraphContents&)) {
    auto* const made = new QPushButton(text);
    made->setObjectName(name);
    made->setAutoDefault(false);
    QObject::connect(made, &QPushButton::clicked, this, [this, press] {
      press(record_);
      keeper_.Reconcile();
    });
    return made;
  };
  auto* const moves = new QVBoxLayout;
  moves->addStretch();
  moves->addWidget(button("contentsToGraph", texts::kToGraph, MoveToGraph));
  moves->addWidget(button("contentsFromGraph", texts::kFromGraph, MoveFromGraph));
  moves->addStretch();
  grid->addWidget(new QLabel(texts::kAvailableCurves), 0, 0);
  grid->addWidget(new QLabel(texts::kGraphCurves), 0, 2);
  grid->addWidget(available_, 1, 0);
  grid->addLayout(moves, 1, 1);
  grid->addWidget(chosen_, 1, 2);
  grid->setColumnStretch(0, 1);
  grid->setColumnStretch(2, 1);
  return grid;
}

void ContentsView::EditLook(const std::function<void(CurveLook&)>& edit) {
  CurveLook look = record_.look;
  edit(look);
  SetLook(record_, look);
  keeper_.Reconcile();
}

QCheckBox* ContentsView::LookTick(const char* name, const char* words, std::optional<bool> CurveLook::*field) {
  auto* const box = new QCheckBox(words);
  box->setObjectName(name);
  QObject::connect(box, &QCheckBox::clicked, this,
                   [this, field](bool now) { EditLook([&](CurveLook& look) { look.*field = now; }); });
  return box;
}

QComboBox* ContentsView::LookChoice(const char* name, std::optional<int> CurveLook::*field) {
  auto* const box = new QComboBox;
  box->setObjectName(name);
  QObject::connect(box, &QComboBox::activated, this,
                   [this, field](int row) { EditLook([&](CurveLook& look) { look.*field = row; }); });
  return box;
}

QLineEdit* ContentsView::LookNumber(const char* name, std::string CurveLook::*field) {
  auto* const number = new QLineEdit;
  number->setObjectName(name);
  number->setFixedWidth(kNumberWidth);
  QObject::connect(number, &QLineEdit::textEdited, this, [this, field](const QString& text) {
    EditLook([&](CurveLook& look) { look.*field = text.toStdString(); });
  });
  return number;
}

QWidget* ContentsView::CurveGroup() {
  auto* const group = new QGroupBox(texts::kCurveGroup);
  auto* const grid = new QGridLayout(group);
  color_ = LookChoice("contentsColor", &CurveLook::nColor);
  for (const CurveColor& color : kCurveColors) color_->addItem(ColorSpot(color.rgb), color.name);
  shape_ = LookChoice("contentsShape", &CurveLook::shape);
  for (const char* const shape : kSymbolShapeNames) shape_->addItem(shape);
  size_ = LookChoice("contentsSize", &CurveLook::size);
  for (const char* const size : kSymbolSizeNames) size_->addItem(size);
  line_ = LookTick("contentsLine", texts::kCurveLine, &CurveLook::line);
  error_ = LookTick("contentsError", texts::kCurveError, &CurveLook::error);
  symbol_ = LookTick("contentsSymbol", texts::kCurveSymbol, &CurveLook::symbol);
  open_ = LookTick("contentsOpen", texts::kCurveOpen, &CurveLook::open);
  grid->addWidget(new QLabel(texts::kCurveColor), 0, 0);
  grid->addWidget(color_, 0, 1);
  grid->addWidget(line_, 0, 2);
  grid->addWidget(error_, 1, 2);
  grid->addWidget(new QLabel(texts::kCurveScale), 0, 3);
  grid->addWidget(scale_ = LookNumber("contentsScale", &CurveLook::scale), 0, 4);
  grid->addWidget(new QLabel(texts::kCurveShift), 1, 3);
  grid->addWidget(shift_ = LookNumber("contentsShift", &CurveLook::shift), 1, 4);
  grid->addWidget(symbol_, 0, 5);
  grid->addWidget(shape_, 0, 6);
  grid->addWidget(size_, 0, 7);
  grid->addWidget(open_, 1, 6);
  grid->addWidget(picture_ = new SymbolView, 0, 8, 2, 1);
  grid->setColumnStretch(9, 1);
  return group;
}

void ContentsView::Offer() {
  OfferCurves(record_, keeper_.session().Datasets(), keeper_.session().Params());
  keeper_.Reconcile();
}

void ContentsView::ShowLists() {
  ShowRows(*available_, RowsOf(record_.available, keeper_.session(), false));
  ShowRows(*chosen_, RowsOf(record_.chosen, keeper_.session(), true));
}

void ContentsView::ShowLook() {
  const CurveLook& look = record_.look;
  color_->setCurrentIndex(look.nColor.value_or(-1));
  shape_->setCurrentIndex(look.shape.value_or(-1));
  size_->setCurrentIndex(look.size.value_or(-1));
  ShowLookTick(*line_, look.line, look.any);
  ShowLookTick(*error_, look.error, look.any);
  ShowLookTick(*symbol_, look.symbol, look.any);
  ShowLookTick(*open_, look.open, look.any);
  ShowText(*scale_, look.scale);
  ShowText(*shift_, look.shift);
  for (QWidget* const control : std::initializer_list<QWidget*>{color_, scale_, shift_}) control->setEnabled(look.any);
  for (QWidget* const control : std::initializer_list<QWidget*>{line_, error_, symbol_, open_, shape_, size_}) {
    control->setEnabled(look.allData);
  }
  picture_->Show(look);
}

void ContentsView::Refresh(bool open) {
  if (open) {
    setWindowTitle(QtText(record_.caption));
    for (const auto& show : filters_) show();
    ShowLists();
    ShowLook();
  }
  ShowOpen(open);
}

}  // namespace kalvex
