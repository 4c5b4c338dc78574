#include "auxiliary/please_wait.h"

#include <QFrame>

#include "platform/desktop/twips.h"

namespace quillary {
namespace {

// Twips.
constexpr int kWidth = 6120;
constexpr int kHeight = 1095;

PlainLabel* MakeLine(QWidget* panel, const QString& name, const QString& text, int top) {
  auto* line = new PlainLabel(panel, name, text);
  line->setAlignment(Qt::AlignCenter);
  Place(*line, 360, top, 5415, 240);
  return line;
}

}  // namespace

PleaseWait::PleaseWait(Hub& hub) : Form(QStringLiteral("PleaseWait")), hub_(hub) {
  MakePanel();
  setWindowTitle(QStringLiteral("Quillary"));
  auto* SSPanel1 = new QFrame(this);
  SSPanel1->setObjectName(QStringLiteral("SSPanel1"));
  SSPanel1->setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Raised));
  SSPanel1->setLineWidth(2);
  Place(*SSPanel1, 0, 0, kWidth, kHeight);
  Lbl1 = MakeLine(SSPanel1, QStringLiteral("Lbl1"), QStringLiteral("Label1"), 270);
  Lbl2 = MakeLine(SSPanel1, QStringLiteral("Lbl2"), QStringLiteral("Label2"), 585);
  SetSize(kWidth, kHeight);
  SetOwner(hub.MainWindow());
}

void PleaseWait::ShowPleaseWait() {
  MoveToCentre(hub_.MainGeometry());
  hub_.SetPanel(1, QString());
  SetLbl1(QString());
  SetLbl2(QString());
  ShowForm();
  hub_.EnableMain(false);
  WaitUntilSeen();
}

void PleaseWait::SetLbl1(const QString& text) {
  Lbl1->SetPlainText(text);
  Lbl1->repaint();
}

void PleaseWait::SetLbl2(const QString& text) {
  Lbl2->SetPlainText(text);
  Lbl2->repaint();
}

}  // namespace quillary
