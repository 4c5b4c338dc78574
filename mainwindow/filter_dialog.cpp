#include "mainwindow/filter_dialog.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <algorithm>

#include "app/select_record.h"
#include "auxiliary/unread_records.h"
#include "platform/desktop/one_line_text.h"
#include "platform/desktop/twips.h"
#include "platform/text.h"

namespace quillary {

namespace {

QLineEdit* MakeBox(const QString& name, const QString& accessibleName) {
  auto* box = new QLineEdit;
  box->setObjectName(name);
  box->setAccessibleName(accessibleName);
  KeepToOneLine(*box);
  return box;
}

QLabel* MakeLabel(const QString& name) {
  auto* label = new QLabel(name);
  label->setObjectName(name);
  return label;
}

}  // namespace

FilterDialog::FilterDialog(SharedData& shared, Records& records, Hub& hub, Percent& percent,
                           MsgBoxSnglTxt& msgBoxSnglTxt)
    : Form(QStringLiteral("FilterDialog")),
      shared_(shared),
      records_(records),
      hub_(hub),
      percent_(percent),
      msgBoxSnglTxt_(msgBoxSnglTxt),
      criteria_{MakeBox(QStringLiteral("TxtFirstName"), QStringLiteral("First name")),
                MakeBox(QStringLiteral("TxtLastName"), QStringLiteral("Last name")),
                MakeBox(QStringLiteral("TxtTitle"), QStringLiteral("Title")),
                MakeBox(QStringLiteral("TxtCompany"), QStringLiteral("Company")),
                MakeBox(QStringLiteral("TxtNotes"), QStringLiteral("Notes"))},
      BtnOK(new QPushButton(QStringLiteral("OK"))),
      BtnCancel(new QPushButton(QStringLiteral("Cancel"))) {
  setWindowTitle(QStringLiteral("Quillary Filter"));
  BtnOK->setObjectName(QStringLiteral("BtnOK"));
  BtnCancel->setObjectName(QStringLiteral("BtnCancel"));
  connect(BtnOK, &QPushButton::clicked, this, &FilterDialog::BtnOK_Click);
  connect(BtnCancel, &QPushButton::clicked, this, &FilterDialog::Unload);
  LayOut();
  SetOwner(hub.MainWindow());
  SetDefaultButton(BtnOK);
  SetCancelButton(BtnCancel);
}

void FilterDialog::LayOut() {
  auto* frame = new QGroupBox;
  auto* grid = new QGridLayout(frame);
  grid->setContentsMargins(Px(120), Px(180), Px(180), Px(180));
  grid->setHorizontalSpacing(Px(60));
  grid->setVerticalSpacing(Px(75));
  grid->addWidget(MakeLabel(QStringLiteral("Name")), 0, 0);
  grid->addWidget(criteria_[0], 0, 1);
  grid->addWidget(criteria_[1], 0, 2);
  const std::array<QString, 3> labels{QStringLiteral("Title"), QStringLiteral("Company"),
                                      QStringLiteral("Notes")};
  for (std::size_t i = 0; i < labels.size(); ++i) {
    const int row = static_cast<int>(i) + 1;
    grid->addWidget(MakeLabel(labels.at(i)), row, 0);
    grid->addWidget(criteria_.at(i + 2), row, 1, 1, 2);
  }
  grid->setColumnMinimumWidth(0, Px(780));
  grid->setColumnMinimumWidth(1, Px(1545));
  grid->setColumnMinimumWidth(2, Px(1545));

  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->setSpacing(Px(285));
  for (QPushButton* button : {BtnOK, BtnCancel}) {
    button->setMinimumSize(Px(1215), Px(375));
    buttons->addWidget(button);
  }
  buttons->addStretch(1);

  const int below = static_cast<int>(labels.size()) + 1;
  grid->setRowMinimumHeight(below, Px(30));
  grid->addLayout(buttons, below + 1, 0, 1, 3);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(Px(180), Px(120), Px(180), Px(180));
  layout->addWidget(frame);
  layout->setSizeConstraint(QLayout::SetFixedSize);
}

void FilterDialog::ShowFilterDialog() {
  if (!IsLoaded()) Form_Load();
  MoveToCorner(hub_.MainGeometry());
  ShowForm();
  hub_.EnableMain(false);
}

void FilterDialog::Form_Load() {
  for (std::size_t i = 0; i < criteria_.size(); ++i) {
    criteria_.at(i)->setText(QString::fromStdString(shared_.FilterCriteria.at(i)));
  }
  // Typing replaces the first criterion, as in a box that is reached by Tab.
  criteria_[0]->selectAll();
}

void FilterDialog::Form_Activate() {
  hub_.SetPanel(1, windowTitle());
}

void FilterDialog::Form_Unload() {
  hub_.SetPanel(1, QString());
  hub_.EnableMain(true);
}

void FilterDialog::BtnOK_Click() {
  for (std::size_t i = 0; i < criteria_.size(); ++i) {
    shared_.FilterCriteria.at(i) = criteria_.at(i)->text().toStdString();
  }
  const bool wasOn = shared_.FilterOn;
  shared_.FilterOn =
      std::any_of(shared_.FilterCriteria.begin(), shared_.FilterCriteria.end(),
                  [](const std::string& criterion) { return !Trim(criterion).empty(); });
  RunTimeError error = RunTimeError::None;
  if (shared_.FilterOn) {
    HideForm();
    hub_.BringToFront();
    percent_.ShowProgressWindow();
    records_.BuildFilteredList(&error);
    records_.GetFilteredNamesList();
    records_.SortFilteredList();
    shared_.CurListIndex = 0;
  }
  records_.ShowRecords();
  if (wasOn && !shared_.FilterOn) SelectRecord(shared_, hub_, shared_.CurRecordNo);
  hub_.SetPanel(1, QString());
  hub_.SetPanel(2, QString());
  percent_.HideForm();
  Unload();
  hub_.BringToFront();
  hub_.SetData();
  if (error != RunTimeError::None) TellUnreadRecords(msgBoxSnglTxt_, error, windowTitle());
}

void FilterOff(SharedData& shared, Records& records, Hub& hub) {
  hub.SetPanel(1, QString());
  if (shared.FilterOn) {
    shared.FilterOn = false;
    records.ShowRecords();
    SelectRecord(shared, hub, shared.CurRecordNo);
  }
  hub.SetData();
}

}  // namespace quillary
