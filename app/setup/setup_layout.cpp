#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <limits>
#include <string>

#include "app/setup/setup_dialog.h"
#include "platform/desktop/twips.h"

namespace quillary {

// Frames, and the controls in them, are made in tab order.

namespace {

template <class T>
T* Named(T* control, const QString& name, const QString& accessibleName = {}) {
  control->setObjectName(name);
  if (!accessibleName.isEmpty()) control->setAccessibleName(accessibleName);
  return control;
}

QGroupBox* MakeFrame(const QString& name, const QString& caption) {
  return Named(new QGroupBox(caption), name);
}

}  // namespace

QGroupBox* SetupDialog::MakeShowFrame() {
  OptShowName = new OptionButton(QStringLiteral("OptShowName"), QStringLiteral("Name"));
  OptShowCompany = new OptionButton(QStringLiteral("OptShowCompany"), QStringLiteral("Company"));
  auto* frame = MakeFrame(QStringLiteral("ShowFrame"), QStringLiteral(" Show in List "));
  auto* column = new QVBoxLayout(frame);
  for (OptionButton* button : {OptShowName, OptShowCompany}) {
    show_.addButton(button);
    column->addWidget(button);
  }
  column->addStretch(1);
  return frame;
}

QGroupBox* SetupDialog::MakeNameStyleFrame() {
  LstNameStyle = Named(new QComboBox, QStringLiteral("LstNameStyle"), QStringLiteral("Name style"));
  LstNameStyle->addItems({QStringLiteral("Mr. Varek"), QStringLiteral("Mr. Brin Varek"),
                          QStringLiteral("Brin Varek"), QStringLiteral("Brin")});
  auto* frame = MakeFrame(QStringLiteral("NameStyleFrame"), QStringLiteral(" Name Style "));
  auto* column = new QVBoxLayout(frame);
  column->addWidget(LstNameStyle);
  column->addStretch(1);
  return frame;
}

QGroupBox* SetupDialog::MakeCopyDetailsFrame() {
  const std::array<QString, CopyFlagCount> captions{
      QStringLiteral("Name"),    QStringLiteral("Title"),  QStringLiteral("Company"),
      QStringLiteral("Address"), QStringLiteral("Phone1"), QStringLiteral("Phone2"),
      QStringLiteral("Fax"),     QStringLiteral("E-Mail")};
  auto* frame = MakeFrame(QStringLiteral("CopyDetailsFrame"), QStringLiteral(" Copy Details "));
  auto* column = new QVBoxLayout(frame);
  for (std::size_t i = 0; i < chkCopy_.size(); ++i) {
    chkCopy_.at(i) = Named(new QCheckBox(captions.at(i)),
                           QStringLiteral("Chk") + QString::fromStdString(shared_.CopyKeys.at(i)),
                           QStringLiteral("Copy ") + captions.at(i));
    column->addWidget(chkCopy_.at(i));
  }
  column->addStretch(1);
  return frame;
}

QGroupBox* SetupDialog::MakePrefixFrame() {
  ChkUsePrefix = Named(new QCheckBox(QStringLiteral("UsePrefix")), QStringLiteral("ChkUsePrefix"),
                       QStringLiteral("Use prefix"));
  LstPrefixSeparator =
      Named(new QComboBox, QStringLiteral("LstPrefixSeparator"), QStringLiteral("Separator"));
  LstPrefixSeparator->addItems({QStringLiteral("Tab"), QStringLiteral("Space"),
                                QStringLiteral("Semi-Colomn"),
                                QStringLiteral("Semi-Colomn + Space")});
  const std::array<QString, PrefixKeys.size()> captions{
      QStringLiteral("Phone1"), QStringLiteral("Phone2"), QStringLiteral("Fax"),
      QStringLiteral("E-Mail")};

  auto* frame = MakeFrame(QStringLiteral("PrefixFrame"), QStringLiteral(" Prefix "));
  auto* lines = new QFormLayout(frame);
  lines->setRowWrapPolicy(QFormLayout::DontWrapRows);
  lines->setHorizontalSpacing(Px(120));
  int label = 1;
  const auto add = [&](const QString& caption, QWidget* control) {
    auto* heading = Named(new QLabel(caption), QStringLiteral("Label%1").arg(label++));
    heading->setBuddy(control);
    lines->addRow(heading, control);
  };
  lines->addRow(ChkUsePrefix);
  add(QStringLiteral("Separator"), LstPrefixSeparator);
  for (std::size_t i = 0; i < txtPrefix_.size(); ++i) {
    const QString key = QString::fromStdString(std::string(PrefixKeys.at(i).Key));
    auto* box = Named(new QLineEdit, QStringLiteral("Txt") + key,
                      captions.at(i) + QStringLiteral(" prefix"));
    box->setMaxLength(std::numeric_limits<int>::max());
    txtPrefix_.at(i) = box;
    add(captions.at(i), box);
  }
  return frame;
}

QGroupBox* SetupDialog::MakeCommPortFrame() {
  auto* frame = MakeFrame(QStringLiteral("CommPortFrame"), QStringLiteral(" Modem Port "));
  auto* grid = new QGridLayout(frame);
  for (int port = 1; port <= 4; ++port) {
    auto* button = new OptionButton(QStringLiteral("OptCommPort(%1)").arg(port),
                                    QStringLiteral("COM%1").arg(port));
    commPort_.addButton(button, port);
    grid->addWidget(button, (port - 1) % 2, (port - 1) / 2);
  }
  return frame;
}

QGroupBox* SetupDialog::MakeDialingSystemFrame() {
  OptToneDial = new OptionButton(QStringLiteral("OptToneDial"), QStringLiteral("Tone Dial"));
  OptPulseDial = new OptionButton(QStringLiteral("OptPulseDial"), QStringLiteral("Pulse Dial"));
  auto* frame = MakeFrame(QStringLiteral("DialingSystemFrame"), QStringLiteral(" Dialing System "));
  auto* column = new QVBoxLayout(frame);
  for (OptionButton* button : {OptToneDial, OptPulseDial}) {
    dialSystem_.addButton(button);
    column->addWidget(button);
  }
  column->addStretch(1);
  return frame;
}

void SetupDialog::LayOut() {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(Px(180), Px(180), Px(180), Px(180));
  grid->setSpacing(Px(120));
  grid->addWidget(MakeShowFrame(), 0, 0);
  grid->addWidget(MakeNameStyleFrame(), 0, 1);
  grid->addWidget(MakeCopyDetailsFrame(), 1, 0);
  grid->addWidget(MakePrefixFrame(), 1, 1);
  grid->addWidget(MakeCommPortFrame(), 2, 0);
  grid->addWidget(MakeDialingSystemFrame(), 2, 1);
  grid->setColumnMinimumWidth(0, Px(2100));
  grid->setColumnMinimumWidth(1, Px(3300));

  ChkTips = Named(new QCheckBox(QStringLiteral("Show Tip of The Day on startup")),
                  QStringLiteral("ChkTips"));
  BtnOK = Named(new QPushButton(QStringLiteral("OK")), QStringLiteral("BtnOK"));
  BtnCancel = Named(new QPushButton(QStringLiteral("Cancel")), QStringLiteral("BtnCancel"));
  grid->addWidget(ChkTips, 3, 0, 1, 2);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(Px(285));
  buttons->addStretch(1);
  for (QPushButton* button : {BtnOK, BtnCancel}) {
    button->setMinimumSize(Px(1215), Px(375));
    buttons->addWidget(button);
  }
  buttons->addStretch(1);
  grid->addLayout(buttons, 4, 0, 1, 2);
  grid->setSizeConstraint(QLayout::SetFixedSize);
}

}  // namespace quillary
