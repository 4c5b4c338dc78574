#include "auxiliary/percent.h"

#include <QFrame>

#include "platform/desktop/twips.h"

namespace quillary {
namespace {

// Twips.
constexpr int kWidth = 6120;
constexpr int kHeight = 1155;

}  // namespace

Percent::Percent(Hub& hub) : Form(QStringLiteral("Percent")), hub_(hub) {
  MakePanel();
  setWindowTitle(QStringLiteral("Quillary"));
  auto* SSPanel1 = new QFrame(this);
  SSPanel1->setObjectName(QStringLiteral("SSPanel1"));
  SSPanel1->setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Raised));
  SSPanel1->setLineWidth(2);
  Place(*SSPanel1, 0, 0, kWidth, kHeight);
  LblPercnt =
      new PlainLabel(SSPanel1, QStringLiteral("LblPercnt"),
                     QStringLiteral("Please be patient while getting records into the data file"));
  Place(*LblPercnt, 360, 240, 5415, 240);
  Percnt = new QProgressBar(SSPanel1);
  Percnt->setObjectName(QStringLiteral("Percnt"));
  Percnt->setAccessibleName(QStringLiteral("Progress"));
  Percnt->setRange(0, 100);
  Place(*Percnt, 360, 585, 5415, 285);
  SetSize(kWidth, kHeight);
  SetOwner(hub.MainWindow());
}

void Percent::ShowProgressWindow() {
  MoveToCentre(hub_.MainGeometry());
  hub_.SetPanel(1, QString());
  hub_.SetPanel(2, QString());
  SetLblPercnt(QString());
  SetPercnt(0);
  hub_.MainWindow().show();
  hub_.EnableMain(false);
  ShowForm();
  WaitUntilSeen();
}

void Percent::SetLblPercnt(const QString& text) {
  LblPercnt->SetPlainText(text);
  LblPercnt->repaint();
}

void Percent::SetPercnt(int percent) {
  Percnt->setValue(percent);
}

}  // namespace quillary
