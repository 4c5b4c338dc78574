#include "auxiliary/msg_box.h"

#include <QApplication>
#include <algorithm>

#include "auxiliary/pictures.h"
#include "platform/desktop/placement.h"
#include "platform/desktop/twips.h"

namespace quillary {
namespace {

// Twips, if not said otherwise.
constexpr int kFormWidth = 4755;
constexpr int kFrameLeft = 180;
constexpr int kFrameTop = 120;
constexpr int kFrameWidth = 4395;
constexpr int kButtonWidth = 1215;
constexpr int kButtonHeight = 375;
constexpr int kLeftButton = 1020;
constexpr int kRightButton = 2520;
constexpr int kGap = 165;  // between frame, buttons and the form's edge
constexpr int kIconLeft = 270;
constexpr int kIconTop = 240;
constexpr int kIconPixels = 48;
constexpr int kTextLeft = 1080;
constexpr int kTextWidth = 3135;

constexpr std::int16_t kLeftAnswer = -1;
constexpr std::int16_t kRightAnswer = 0;

// In the order of MsgIcon.
constexpr std::array kIcons{"Critical", "Question", "Exclamation", "Information"};

}  // namespace

MsgBox::MsgBox(const QString& name, SharedData& shared, Hub& hub, int frameHeight)
    : Form(name),
      shared_(shared),
      hub_(hub),
      Frame(new QFrame(this)),
      BtnOK(new QPushButton(QStringLiteral("OK"), this)),
      BtnCancel(new QPushButton(QStringLiteral("Cancel"), this)),
      icons_{} {
  setWindowTitle(QStringLiteral("Message Box"));
  Frame->setObjectName(QStringLiteral("Frame"));
  Frame->setFrameShape(QFrame::StyledPanel);
  Place(*Frame, kFrameLeft, kFrameTop, kFrameWidth, frameHeight);
  for (std::size_t i = 0; i < kIcons.size(); ++i) {
    const QString iconName = QString::fromLatin1(kIcons[i]);
    icons_[i] = new QLabel(Frame);
    icons_[i]->setObjectName(iconName);
    icons_[i]->setAccessibleName(iconName);
    icons_[i]->setPixmap(Picture(iconName.toLower(), QSize(kIconPixels, kIconPixels), *this));
    icons_[i]->setGeometry(Px(kIconLeft), Px(kIconTop), kIconPixels, kIconPixels);
    icons_[i]->hide();
  }

  const int buttonTop = kFrameTop + frameHeight + kGap;
  BtnOK->setObjectName(QStringLiteral("BtnOK"));
  Place(*BtnOK, kLeftButton, buttonTop, kButtonWidth, kButtonHeight);
  connect(BtnOK, &QPushButton::clicked, this, &MsgBox::BtnOK_Click);
  BtnCancel->setObjectName(QStringLiteral("BtnCancel"));
  Place(*BtnCancel, kRightButton, buttonTop, kButtonWidth, kButtonHeight);
  connect(BtnCancel, &QPushButton::clicked, this, &MsgBox::BtnCancel_Click);
  SetDefaultButton(BtnOK);
  SetCancelButton(BtnCancel);

  SetSize(kFormWidth, buttonTop + kButtonHeight + kGap);
  SetOwner(hub.MainWindow());
}

MessageText* MsgBox::AddText(const QString& name, int top, int height) {
  auto* text = new MessageText(Frame, name);
  text->setWordWrap(true);
  text->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  Place(*text, kTextLeft, top, kTextWidth, height);
  return text;
}

bool MsgBox::Arrange(MsgButtons buttons, const QString& okCaption, const QString& cancelCaption,
                     MsgIcon icon, const QString& title) {
  if (isVisible()) {
    shared_.MsgBoxAnswer = kRightAnswer;
    return false;
  }
  BtnOK->setText(okCaption);
  BtnCancel->setText(cancelCaption);
  ArrangeButtons(buttons);
  for (std::size_t i = 0; i < icons_.size(); ++i) {
    icons_[i]->setVisible(static_cast<int>(icon) == static_cast<int>(i) + 1);
  }
  setWindowTitle(title);
  return true;
}

void MsgBox::ArrangeButtons(MsgButtons buttons) {
  const int centre = (width() - BtnOK->width()) / 2;
  switch (buttons) {
    case MsgButtons::Left:
    case MsgButtons::Right: {
      QPushButton* only = buttons == MsgButtons::Left ? BtnOK : BtnCancel;
      BtnOK->setVisible(only == BtnOK);
      BtnCancel->setVisible(only == BtnCancel);
      only->move(centre, only->y());
      SetDefaultButton(only);
      break;
    }
    case MsgButtons::BothLeftDefault:
    case MsgButtons::BothRightDefault:
      BtnOK->show();
      BtnCancel->show();
      BtnOK->move(Px(kLeftButton), BtnOK->y());
      BtnCancel->move(Px(kRightButton), BtnCancel->y());
      SetDefaultButton(buttons == MsgButtons::BothLeftDefault ? BtnOK : BtnCancel);
      break;
  }
}

void MsgBox::Ask() {
  // What a box answers that is hidden in any other way than by its buttons.
  shared_.MsgBoxAnswer = kRightAnswer;
  MoveToCentre(hub_.MainGeometry());
  ShowModal();
}

void MsgBox::Form_Activate() {
  QApplication::beep();
  const QRect screen = ScreenOf(hub_.MainGeometry());
  const int lowest = screen.top() + screen.height() - FrameSize().height() - Px(300);
  const QPoint place(std::max(pos().x(), screen.left() + Px(150)), std::min(pos().y(), lowest));
  if (place != pos()) MoveTo(place);
}

void MsgBox::Form_Unload() {
  shared_.MsgBoxAnswer = kRightAnswer;
}

// The button that Enter presses has the focus, else Enter would press another one.
QWidget* MsgBox::FirstControl() const {
  return DefaultButton();
}

// Esc answers even where there is no right button to press.
void MsgBox::reject() {
  BtnCancel_Click();
}

void MsgBox::BtnOK_Click() {
  shared_.MsgBoxAnswer = kLeftAnswer;
  HideForm();
}

void MsgBox::BtnCancel_Click() {
  shared_.MsgBoxAnswer = kRightAnswer;
  HideForm();
}

// The texts use the whole inside of the frame, so that three lines fit in every font.
MsgBoxSnglTxt::MsgBoxSnglTxt(SharedData& shared, Hub& hub)
    : MsgBox(QStringLiteral("MsgBoxSnglTxt"), shared, hub, 1275),
      Text1(AddText(QStringLiteral("Text1"), 300, 900)) {}

void MsgBoxSnglTxt::ShowMsg(const QString& text, MsgButtons buttons, const QString& okCaption,
                            const QString& cancelCaption, MsgIcon icon, const QString& title) {
  if (!Arrange(buttons, okCaption, cancelCaption, icon, title)) return;
  Text1->SetPlainText(text);
  Ask();
}

MsgBoxDblTxt::MsgBoxDblTxt(SharedData& shared, Hub& hub)
    : MsgBox(QStringLiteral("MsgBoxDblTxt"), shared, hub, 1575),
      Text1(AddText(QStringLiteral("Text1"), 240, 660)),
      Text2(AddText(QStringLiteral("Text2"), 900, 645)) {}

void MsgBoxDblTxt::ShowMsg(const QString& text1, const QString& text2, MsgButtons buttons,
                           const QString& okCaption, const QString& cancelCaption, MsgIcon icon,
                           const QString& title) {
  if (!Arrange(buttons, okCaption, cancelCaption, icon, title)) return;
  Text1->SetPlainText(text1);
  Text2->SetPlainText(text2);
  Ask();
}

}  // namespace quillary
