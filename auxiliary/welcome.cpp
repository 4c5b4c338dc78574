#include "auxiliary/welcome.h"

#include <QFrame>
#include <QGuiApplication>
#include <QScreen>

#include "auxiliary/pictures.h"
#include "platform/desktop/twips.h"

namespace quillary {
namespace {

// Twips.
constexpr int kWidth = 6000;
constexpr int kHeight = 3300;
constexpr int kMargin = 150;

QFrame* MakePanelFrame(QWidget* parent, const QString& name, QFrame::Shadow shadow) {
  auto* panel = new QFrame(parent);
  panel->setObjectName(name);
  panel->setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(shadow));
  panel->setLineWidth(2);
  return panel;
}

// In ink, since the picture behind it is of paper in every colour scheme.
void MakeHeading(QWidget* parent, const QString& text, qreal scale, int top, int height) {
  auto* label = new PlainLabel(parent, QString(), text);
  QFont font(QStringLiteral("serif"));
  font.setStyleHint(QFont::Serif);
  font.setPointSizeF(label->font().pointSizeF() * scale);
  font.setBold(true);
  label->setFont(font);
  QPalette palette = label->palette();
  palette.setColor(QPalette::WindowText, QColor(0x25, 0x3a, 0x5e));
  label->setPalette(palette);
  Place(*label, 2500, top, 3050, height);
}

}  // namespace

Welcome::Welcome() : Form(QStringLiteral("Welcome")) {
  MakePanel();
  setWindowTitle(QStringLiteral("Quillary"));
  QFrame* SSPanel1 = MakePanelFrame(this, QStringLiteral("SSPanel1"), QFrame::Raised);
  Place(*SSPanel1, 0, 0, kWidth, kHeight);
  QFrame* SSPanel2 = MakePanelFrame(SSPanel1, QStringLiteral("SSPanel2"), QFrame::Sunken);
  Place(*SSPanel2, kMargin, kMargin, kWidth - 2 * kMargin, 2070);

  auto* Image1 = new QLabel(SSPanel2);
  Image1->setObjectName(QStringLiteral("Image1"));
  Image1->setAccessibleName(QStringLiteral("Quill"));
  Image1->setGeometry(SSPanel2->contentsRect());
  Image1->setPixmap(Picture(QStringLiteral("welcome"), Image1->size(), *this));
  MakeHeading(SSPanel2, QStringLiteral("Quillary"), 3.2, 330, 840);
  MakeHeading(SSPanel2, QStringLiteral("Version 2.0"), 1.2, 1200, 345);

  Lbl = new PlainLabel(SSPanel1, QStringLiteral("Lbl"), QStringLiteral("Loading Prefernces ..."));
  Place(*Lbl, kMargin, 2370, kWidth - 2 * kMargin, 285);
  Percnt = new QProgressBar(SSPanel1);
  Percnt->setObjectName(QStringLiteral("Percnt"));
  Percnt->setAccessibleName(QStringLiteral("Progress"));
  Percnt->setRange(0, 100);
  Percnt->setValue(0);
  Place(*Percnt, kMargin, 2760, kWidth - 2 * kMargin, 285);
  SetSize(kWidth, kHeight);
}

void Welcome::ShowWelcome() {
  if (const QScreen* screen = QGuiApplication::primaryScreen()) MoveToCentre(screen->geometry());
  ShowForm();
  WaitUntilSeen();
}

void Welcome::SetLbl(const QString& text) {
  Lbl->SetPlainText(text);
  Lbl->repaint();
}

void Welcome::ShowPercnt(bool show) {
  Percnt->setVisible(show);
}

void Welcome::SetPercnt(int percent) {
  Percnt->setValue(percent);
}

}  // namespace quillary
