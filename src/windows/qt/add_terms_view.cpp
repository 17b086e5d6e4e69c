#include "windows/qt/add_terms_view.h"

#include <QFormLayout>
#include <QVBoxLayout>

#include "windows/qt/keeper.h"
#include "windows/qt/show.h"
#include "windows/window_texts.h"

namespace kalvex {
namespace {

constexpr QSize kSize(380, 320);

void ShowChoices(QComboBox& box, const std::vector<std::string>& choices, std::size_t chosen) {
  QStringList wanted, shown;
  for (const std::string& choice : choices) wanted << QtText(choice);
  for (int k = 0; k < box.count(); ++k) shown << box.itemText(k);
  if (wanted != shown) {
    box.clear();
    box.addItems(wanted);
  }
  box.setCurrentIndex(static_cast<int>(chosen));
}

}  // namespace

AddTermsView::AddTermsView(Keeper& keeper, QWidget& owner)
    : ModalView(keeper, owner, "addTerms",
                {[&keeper] { AcceptAddTerms(keeper.desk()); }, [&keeper] { CancelAddTerms(keeper.desk()); }}) {
  setWindowTitle(texts::kAddTermsTitle);
  auto* const layout = new QVBoxLayout(this);
  auto* const choices = new QFormLayout;
  choices->addRow(texts::kAddTermsModel, models_ = NewChoice("addTermsModel"));
  choices->addRow(texts::kAddTermsDataset, datasets_ = NewChoice("addTermsDataset"));
  layout->addLayout(choices);
  layout->addWidget(new QLabel(texts::kAddTermsList));
  layout->addWidget(lines_ = NewList("addTermsLines"), 1);
  layout->addLayout(ButtonRow(texts::kOk, texts::kCancel));
  QObject::connect(lines_, &QTreeWidget::itemSelectionChanged, this, [this] { Select(); });
  QObject::connect(lines_, &QTreeWidget::itemDoubleClicked, this, [this] { accept(); });
  resize(kSize);
}

QComboBox* AddTermsView::NewChoice(const char* name) {
  auto* const box = new QComboBox;
  box->setObjectName(name);
  QObject::connect(box, &QComboBox::activated, this, [this] {
    OfferCandidates(keeper_.desk(), static_cast<std::size_t>(datasets_->currentIndex()),
                    static_cast<std::size_t>(models_->currentIndex()));
    keeper_.Reconcile();
  });
  return box;
}

void AddTermsView::Select() {
  auto& lines = keeper_.desk().fitWindow.addTerms.lines;
  for (std::size_t k = 0; k < lines.size(); ++k) lines[k].selected = IsRowSelected(*lines_, k);
}

void AddTermsView::Refresh() {
  const AddTermsDialog& dialog = keeper_.desk().fitWindow.addTerms;
  if (dialog.open) {
    const Desk& desk = keeper_.desk();
    ShowChoices(*models_, ModelChoices(desk), dialog.modelChoice);
    ShowChoices(*datasets_, DatasetChoices(desk), dialog.datasetChoice);
    std::vector<ShownRow> rows;
    for (const CandidateLine& line : dialog.lines) rows.push_back({line.text, line.selected});
    ShowRows(*lines_, rows);
  }
  ShowOpen(dialog.open);
}

}  // namespace kalvex
