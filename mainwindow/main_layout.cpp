#include <QGridLayout>
#include <QHBoxLayout>
#include <QScreen>
#include <QVBoxLayout>
#include <vector>

#include "mainwindow/main_dialog.h"
#include "platform/desktop/one_line_text.h"
#include "platform/desktop/twips.h"

namespace quillary {

void MainDialog::MakeDetails() {
  DetailsPanel->setObjectName(QStringLiteral("DetailsPanel"));
  DetailsPanel->setAccessibleName(QStringLiteral("Details"));
  DetailsPanel->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
  DetailsPanel->setBackgroundRole(QPalette::Base);
  DetailsPanel->setAutoFillBackground(true);

  for (std::size_t i = 0; i < Label.size(); ++i) {
    const int index = static_cast<int>(i);
    auto* label = new DetailLabel(
        QStringLiteral("Label(%1)").arg(index), QString::fromLatin1(DetailLineNames.at(i)),
        i == NotesLine ? DetailLabel::Shape::Block : DetailLabel::Shape::OneLine);
    connect(label, &DetailLabel::MouseDown, this,
            [this, index](QMouseEvent* event) { Label_MouseDown(index, *event); });
    connect(label, &DetailLabel::MouseMove, this, [this, index] { Label_MouseMove(index); });
    Label.at(i) = label;
  }
  Notes = new QLabel(QStringLiteral("Notes"));
  Notes->setObjectName(QStringLiteral("Notes"));
  Notes->setBuddy(Label[NotesLine]);
}

void MainDialog::MakeCopyBoxes() {
  DetailsFrame->setObjectName(QStringLiteral("DetailsFrame"));
  const std::array<QString, CopyFlagCount> captions{
      QStringLiteral("Name"),    QStringLiteral("Title"),  QStringLiteral("Company"),
      QStringLiteral("Address"), QStringLiteral("Phone1"), QStringLiteral("Phone2"),
      QStringLiteral("Fax"),     QStringLiteral("E-Mail")};
  for (std::size_t i = 0; i < ChkCopy.size(); ++i) {
    auto* box = new QCheckBox(captions.at(i));
    box->setObjectName(QStringLiteral("Chk") + QString::fromStdString(shared_.CopyKeys.at(i)));
    box->setAccessibleName(QStringLiteral("Copy ") + captions.at(i));
    // Only what the user does: SetCopyBox leaves the flags alone.
    connect(box, &QCheckBox::clicked, this,
            [this, i](bool checked) { shared_.CopyValues.at(i) = checked ? 1 : 0; });
    ChkCopy.at(i) = box;
  }
}

void MainDialog::MakeButtons() {
  const auto make = [](const QString& name, const QString& caption) {
    return new CommandButton(name, caption);
  };
  BtnCopy = make(QStringLiteral("BtnCopy"), QStringLiteral("&Copy"));
  BtnNew = make(QStringLiteral("BtnNew"), QStringLiteral("&New"));
  BtnEdit = make(QStringLiteral("BtnEdit"), QStringLiteral("&Edit"));
  BtnDelete = make(QStringLiteral("BtnDelete"), QStringLiteral("&Delete"));
  BtnFilter = make(QStringLiteral("BtnFilter"), QStringLiteral("&Filter"));
  BtnDial = make(QStringLiteral("BtnDial"), QStringLiteral("Di&al"));
  BtnExchange = make(QStringLiteral("BtnExchange"), QStringLiteral("E&xchange"));
  BtnSetup = make(QStringLiteral("BtnSetup"), QStringLiteral("&Setup"));
  BtnAbout = make(QStringLiteral("BtnAbout"), QStringLiteral("&About"));
  BtnExit = make(QStringLiteral("BtnExit"), QStringLiteral("E&xit"));

  CopyrightLabel = new QLabel(QStringLiteral("© Quillary"));
  CopyrightLabel->setObjectName(QStringLiteral("CopyrightLabel"));
  CopyrightLabel->setAlignment(Qt::AlignCenter);
  CopyrightLabel->setCursor(Qt::PointingHandCursor);
}

void MainDialog::MakeFind() {
  FrmFind->setObjectName(QStringLiteral("FrmFind"));
  TxtFind = new QLineEdit;
  TxtFind->setObjectName(QStringLiteral("TxtFind"));
  TxtFind->setAccessibleName(QStringLiteral("Text to find"));
  KeepToOneLine(*TxtFind);
  BtnFind = new CommandButton(QStringLiteral("BtnFind"), QStringLiteral("Find Next"));
  // So that nothing moves when the caption becomes the longer one.
  BtnFind->setMinimumWidth(BtnFind->sizeHint().width());
  BtnFind->setText(QStringLiteral("Find"));
  SrchInLabel = new QLabel(QStringLiteral("Search In:"));
  SrchInLabel->setObjectName(QStringLiteral("SrchInLabel"));
  CboSrchIn = new QComboBox;
  CboSrchIn->setObjectName(QStringLiteral("CboSrchIn"));
  CboSrchIn->setAccessibleName(QStringLiteral("Search in"));
  SrchInLabel->setBuddy(CboSrchIn);
  CboSrchIn->addItems({QStringLiteral("Name only"), QStringLiteral("Company only"),
                       QStringLiteral("Name, Title, & Company"), QStringLiteral("All fields")});
  CboSrchIn->setCurrentIndex(-1);
}

// As the controls stand on the screen, from the left to the right and the find frame below.
void MainDialog::SetTabOrder() {
  std::vector<QWidget*> controls{LstNames, DetailsPanel};
  controls.insert(controls.end(), ChkCopy.begin(), ChkCopy.end());
  controls.insert(controls.end(),
                  {BtnCopy, BtnNew, BtnEdit, BtnDelete, BtnFilter, BtnDial, BtnExchange, BtnSetup,
                   BtnAbout, BtnExit, TxtFind, BtnFind, CboSrchIn});
  for (std::size_t i = 1; i < controls.size(); ++i) setTabOrder(controls[i - 1], controls[i]);
}

void MainDialog::LayOut() {
  auto* details = new QVBoxLayout(DetailsPanel);
  details->setContentsMargins(Px(90), Px(60), Px(90), Px(60));
  details->setSpacing(0);
  for (std::size_t i = 0; i < NotesLine; ++i) {
    // The name, the company, the address and the numbers read as groups.
    if (i == AddressLine || i == Phone1Line) details->addSpacing(Px(90));
    details->addWidget(Label.at(i));
  }
  details->addSpacing(Px(90));
  details->addWidget(Notes);
  details->addWidget(Label[NotesLine], 1);

  auto* copies = new QVBoxLayout(DetailsFrame);
  for (QCheckBox* box : ChkCopy) copies->addWidget(box);
  copies->addStretch(1);

  auto* buttons = new QVBoxLayout;
  buttons->setSpacing(Px(60));
  for (CommandButton* button :
       {BtnCopy, BtnNew, BtnEdit, BtnDelete, BtnFilter, BtnDial, BtnExchange, BtnSetup, BtnAbout}) {
    buttons->addWidget(button);
  }
  buttons->addWidget(CopyrightLabel);
  buttons->addStretch(1);
  buttons->addWidget(BtnExit);

  auto* find = new QHBoxLayout(FrmFind);
  TxtFind->setMinimumWidth(Px(900));
  find->addWidget(TxtFind, 1);
  find->addWidget(BtnFind);
  find->addSpacing(Px(120));
  find->addWidget(SrchInLabel);
  find->addWidget(CboSrchIn);

  auto* grid = new QGridLayout;
  grid->setContentsMargins(Px(120), Px(120), Px(120), Px(60));
  grid->setSpacing(Px(120));
  grid->addWidget(LstNames, 0, 0);
  grid->addWidget(DetailsPanel, 0, 1);
  grid->addWidget(DetailsFrame, 0, 2);
  grid->addWidget(FrmFind, 1, 0, 1, 3);
  grid->addLayout(buttons, 0, 3, 2, 1);
  grid->setColumnStretch(0, 4);
  grid->setColumnStretch(1, 5);
  grid->setColumnMinimumWidth(0, Px(1800));

  auto* inside = new QWidget;
  inside->setLayout(grid);
  setCentralWidget(inside);
  setStatusBar(StatBar);
  SetTabOrder();
  // Wide enough for the hints, but no wider than the screen in a large font.
  const QSize room = screen()->availableSize();
  resize(QSize(Px(10200), Px(6000)).boundedTo(room));
}

}  // namespace quillary
