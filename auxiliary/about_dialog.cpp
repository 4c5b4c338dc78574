#include "auxiliary/about_dialog.h"

#include <QFrame>
#include <QPushButton>

#include "auxiliary/pictures.h"
#include "platform/desktop/placement.h"
#include "platform/desktop/twips.h"

namespace quillary {

AboutDialog::AboutDialog(SharedData& shared, Hub& hub)
    : Form(QStringLiteral("AboutDialog")), shared_(shared), hub_(hub) {
  setWindowTitle(QStringLiteral("About Quillary"));
  auto* Picture1 = new QLabel(this);
  Picture1->setObjectName(QStringLiteral("Picture1"));
  Picture1->setAccessibleName(QStringLiteral("Quill"));
  Picture1->setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Sunken));
  Picture1->setAlignment(Qt::AlignCenter);
  Place(*Picture1, 180, 180, 1500, 1500);
  Picture1->setPixmap(Picture(QStringLiteral("quillary"), QSize(Px(1320), Px(1320)), *this));

  auto* Label1 = new PlainLabel(this, QStringLiteral("Label1"), QStringLiteral("Quillary"));
  QFont heading = Label1->font();
  heading.setBold(true);
  heading.setPointSizeF(heading.pointSizeF() * 2);
  Label1->setFont(heading);
  Place(*Label1, 1920, 360, 2760, 600);
  LblVersion = new PlainLabel(this, QStringLiteral("LblVersion"));
  Place(*LblVersion, 1920, 1050, 2760, 285);

  auto* BtnOK = new QPushButton(QStringLiteral("OK"), this);
  BtnOK->setObjectName(QStringLiteral("BtnOK"));
  Place(*BtnOK, 1072, 1860, 1215, 375);
  connect(BtnOK, &QPushButton::clicked, this, &Form::Unload);
  auto* BtnCancel = new QPushButton(QStringLiteral("Cancel"), this);
  BtnCancel->setObjectName(QStringLiteral("BtnCancel"));
  Place(*BtnCancel, 2572, 1860, 1215, 375);
  connect(BtnCancel, &QPushButton::clicked, this, &Form::Unload);
  SetDefaultButton(BtnOK);
  SetCancelButton(BtnCancel);

  SetSize(4860, 2415);
  SetOwner(hub.MainWindow());
}

void AboutDialog::ShowAbout() {
  Form_Load();
  const QRect main = hub_.MainGeometry();
  MoveToCentre(main);
  MoveTo(HoldOnScreen(pos(), FrameSize(), ScreenOf(main)));
  ShowForm();
  hub_.EnableMain(false);
}

void AboutDialog::Form_Load() {
  LblVersion->SetPlainText(QStringLiteral("Version ") + QString::fromStdString(shared_.Version));
}

void AboutDialog::Form_Activate() {
  hub_.SetPanel(1, windowTitle());
}

void AboutDialog::Form_Unload() {
  hub_.SetPanel(1, QString());
  hub_.EnableMain(true);
}

}  // namespace quillary
