#include "auxiliary/tip_of_day.h"

#include <QFrame>
#include <QRandomGenerator>
#include <array>

#include "auxiliary/pictures.h"
#include "platform/desktop/placement.h"
#include "platform/desktop/twips.h"
#include "platform/numbers.h"

namespace quillary {
namespace {

constexpr std::array<const char*, 11> kTipTexts{
    "You can Double Click the name in the list, to copy the data to the Clipboard.",
    "You can Click the Name, in the details window, to change it's appearence, for the selected "
    "record.",
    "You can Shift+Click the Name, in the details window, to copy it to the Clipboard.",
    "You can Double Click the Status Bar to change from 'Name' view to 'Company' view.",
    "You can Double Click the Status Bar to load the Filter dialog, or to turn the filter OFF.",
    "You can Click a phone number, in the details window, to dial to this phone number.",
    "You can Shift+Click a phone number, in the details window, to copy it to the Clipboard",
    "You can Right Click on any buttton to load a PopUp Menu.",
    "You can Right Click the names list to load a PopUp Menu.",
    "You can Shift+Click the 'New' button to duplicate the selected record.",
    "You can Shift+Click the 'Delete' button to delete the selected record, without confirmation "
    "message.",
};

constexpr const char* kTipsKey = "Tips";

}  // namespace

TipOfDay::TipOfDay(SharedData& shared, Profile& profile, Hub& hub, MsgBoxSnglTxt& msgBoxSnglTxt)
    : Form(QStringLiteral("TipOfDay")),
      shared_(shared),
      profile_(profile),
      hub_(hub),
      msgBoxSnglTxt_(msgBoxSnglTxt) {
  setWindowTitle(QStringLiteral("Tip of The Day"));
  auto* panel = new QFrame(this);
  panel->setFrameStyle(static_cast<int>(QFrame::Panel) | static_cast<int>(QFrame::Sunken));
  panel->setBackgroundRole(QPalette::Base);
  panel->setForegroundRole(QPalette::Text);
  panel->setAutoFillBackground(true);
  Place(*panel, 180, 180, 5640, 2100);

  auto* Picture1 = new QLabel(panel);
  Picture1->setObjectName(QStringLiteral("Picture1"));
  Picture1->setAccessibleName(QStringLiteral("Tip"));
  Place(*Picture1, 180, 240, 900, 900);
  Picture1->setPixmap(Picture(QStringLiteral("tip"), Picture1->size(), *this));

  auto* Label1 = new PlainLabel(panel, QStringLiteral("Label1"), QStringLiteral("Did you know..."));
  Label1->setForegroundRole(QPalette::Text);
  QFont heading = Label1->font();
  heading.setBold(true);
  heading.setPointSizeF(heading.pointSizeF() * 1.3);
  Label1->setFont(heading);
  Place(*Label1, 1260, 240, 4200, 390);

  TxtTipTxt = new PlainLabel(panel, QStringLiteral("TxtTipTxt"));
  TxtTipTxt->setForegroundRole(QPalette::Text);
  TxtTipTxt->setWordWrap(true);
  TxtTipTxt->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  Place(*TxtTipTxt, 1260, 780, 4200, 1200);

  ChkTips = new QCheckBox(QStringLiteral("Show Tip of The Day on startup"), this);
  ChkTips->setObjectName(QStringLiteral("ChkTips"));
  Place(*ChkTips, 180, 2400, 5640, 285);

  BtnNext = new QPushButton(QStringLiteral("Next Tip"), this);
  BtnNext->setObjectName(QStringLiteral("BtnNext"));
  Place(*BtnNext, 1642, 2835, 1215, 375);
  connect(BtnNext, &QPushButton::clicked, this, &TipOfDay::BtnNext_Click);
  BtnOK = new QPushButton(QStringLiteral("Close"), this);
  BtnOK->setObjectName(QStringLiteral("BtnOK"));
  Place(*BtnOK, 3142, 2835, 1215, 375);
  connect(BtnOK, &QPushButton::clicked, this, &TipOfDay::BtnOK_Click);

  setTabOrder(ChkTips, BtnNext);
  setTabOrder(BtnNext, BtnOK);
  SetDefaultButton(BtnOK);
  SetSize(6000, 3375);
  SetOwner(hub.MainWindow());
}

void TipOfDay::ShowTip(bool holdOnScreen) {
  Form_Load();
  const QRect main = hub_.MainGeometry();
  MoveToCentre(main);
  if (holdOnScreen) MoveTo(HoldOnScreen(pos(), FrameSize(), ScreenOf(main)));
  ShowForm();
  hub_.EnableMain(false);
}

void TipOfDay::Form_Load() {
  ChkTips->setChecked(
      ToInt16(profile_.ReadEntry(shared_.PrefsFile, shared_.PrefsSection, kTipsKey)) == 1);
  DrawTip();
}

void TipOfDay::Form_Activate() {
  hub_.SetPanel(1, windowTitle());
}

void TipOfDay::Form_Unload() {
  hub_.SetPanel(1, QString());
  hub_.EnableMain(true);
}

void TipOfDay::BtnNext_Click() {
  const std::int16_t shown = TipIndex;
  while (TipIndex == shown) DrawTip();
}

void TipOfDay::BtnOK_Click() {
  const RunTimeError error = profile_.WriteEntry(shared_.PrefsFile, shared_.PrefsSection, kTipsKey,
                                                 ChkTips->isChecked() ? "1" : "0");
  if (error == RunTimeError::None) {
    Unload();
    return;
  }
  msgBoxSnglTxt_.ShowMsg(QStringLiteral("The preferences could not be saved:\r") +
                             QString::fromStdString(RunTimeErrorText(error)) + QLatin1Char('.'),
                         MsgButtons::Left, QStringLiteral("OK"), QString(), MsgIcon::Critical,
                         windowTitle());
}

void TipOfDay::DrawTip() {
  const std::uint32_t count = kTipTexts.size();
  TipIndex = static_cast<std::int16_t>(QRandomGenerator::global()->bounded(count));
  const char* text = kTipTexts.at(static_cast<std::size_t>(TipIndex));
  TxtTipTxt->SetPlainText(QString::fromLatin1(text));
  // Who cannot see the text hears it when the button brings another one.
  BtnNext->setAccessibleDescription(TxtTipTxt->text());
}

}  // namespace quillary
