#include "dialer/dial_dialog.h"

#include <algorithm>

#include "auxiliary/one_line.h"
#include "dialer/dial_number.h"
#include "platform/desktop/twips.h"

namespace quillary {
namespace {

constexpr int kWaitMs = 10000;
constexpr const char* kHangUp = "ATH\r";
constexpr const char* kNoDialTone = "NO DIALTONE";
constexpr const char* kBusy = "BUSY";

QPushButton* MakeButton(QWidget* form, const QString& name, const QString& caption) {
  auto* button = new QPushButton(caption, form);
  button->setObjectName(name);
  return button;
}

QString NumbersHeading() {
  return QStringLiteral("Type a number to dial, or select from the list.");
}

}  // namespace

DialDialog::DialDialog(SharedData& shared, Profile& profile, Hub& hub, Commands& commands,
                       MsgBoxSnglTxt& msgBoxSnglTxt)
    : Form(QStringLiteral("DialDialog")),
      shared_(shared),
      profile_(profile),
      hub_(hub),
      commands_(commands),
      msgBoxSnglTxt_(msgBoxSnglTxt),
      Frame1(new QGroupBox(QStringLiteral(" Dial a Number "), this)),
      Label1(new PlainLabel(Frame1, QStringLiteral("Label1"))),
      TxtDialNumber(new QLineEdit(Frame1)),
      LstDialList(new DialList(Frame1)),
      BtnDial(MakeButton(this, QStringLiteral("BtnDial"), QStringLiteral("Dial"))),
      BtnCancel(MakeButton(this, QStringLiteral("BtnCancel"), QStringLiteral("Cancel"))) {
  setWindowTitle(QStringLiteral("Dial a Number"));
  LayOut();
  SetOwner(hub.MainWindow());
  SetDefaultButton(BtnDial);
  SetCancelButton(BtnCancel);
  DialTimer.setInterval(kWaitMs);
  // The prompt comes once, however long it stays.
  DialTimer.setSingleShot(true);
  connect(&DialTimer, &QTimer::timeout, this, &DialDialog::DialTimer_Timer);
  connect(&Comm, &SerialPort::Received, this, &DialDialog::Comm_Received);
  connect(TxtDialNumber, &QLineEdit::textChanged, this, &DialDialog::TxtDialNumber_Change);
  connect(LstDialList, &DialList::Click, this, &DialDialog::LstDialList_Click);
  connect(BtnDial, &QPushButton::clicked, this, &DialDialog::BtnDial_Click);
  connect(BtnCancel, &QPushButton::clicked, this, &DialDialog::BtnCancel_Click);
}

// The program may end while the modem dials.
DialDialog::~DialDialog() {
  if (!Dialing) return;
  Comm.Write(kHangUp);
  Comm.Close();
}

void DialDialog::LayOut() {
  // Twips. The heading is to fit in every font, and so everything may be wider than it was drawn.
  constexpr int headingWidth = 3195;
  const int needed = Label1->fontMetrics().horizontalAdvance(NumbersHeading());
  const int wider = std::max(0, Twips(needed) + 15 - headingWidth);
  // The caption stands above the frame's line, not on it.
  constexpr int lower = 75;

  Frame1->setObjectName(QStringLiteral("Frame1"));
  Place(*Frame1, 180, 120, 3435 + wider, 1695);
  Place(*Label1, 180, 240 + lower, headingWidth + wider, 195);
  TxtDialNumber->setObjectName(QStringLiteral("TxtDialNumber"));
  TxtDialNumber->setAccessibleName(QStringLiteral("Number to dial"));
  TxtDialNumber->setValidator(new NumberValidator(TxtDialNumber));
  Place(*TxtDialNumber, 180, 540 + lower, 3075 + wider, 315);
  // High enough for all three numbers.
  Place(*LstDialList, 180, 900 + lower, 3075 + wider, 450);
  LstDialList->resize(LstDialList->width(),
                      std::max(LstDialList->height(), LstDialList->HeightOf(3)));
  Place(*BtnDial, 540 + wider / 2, 2040, 1215, 375);
  Place(*BtnCancel, 2040 + wider / 2, 2040, 1215, 375);
  SetSize(3795 + wider, 2580);
}

void DialDialog::OpenDialer() {
  Open(QString());
}

void DialDialog::Dial(const std::string& number) {
  hub_.SetPanel(1, QStringLiteral("Dial a number."));
  Open(NumberOf(number));
}

void DialDialog::Open(const QString& number) {
  const PortCheck check = CheckPortSettings();
  if (check != PortCheck::Valid) {
    OfferSetup(check);
    return;
  }
  TxtDialNumber->setText(number);
  isOpening_ = true;
  MoveToCorner(hub_.MainGeometry());
  ShowForm();
  hub_.EnableMain(false);
}

void DialDialog::Form_Activate() {
  // Not when the user comes back from another window: the dialog is as he left it.
  if (!isOpening_) return;
  isOpening_ = false;
  AskForNumber();
  TxtDialNumber_Change();
  // Enter is then to stop what nobody has to start.
  if (BtnDial->isEnabled()) BtnDial->click();
}

void DialDialog::AskForNumber() {
  hub_.SetPanel(1, QStringLiteral("Dial a number."));
  FillDialList();
  TxtDialNumber->setFocus();
}

void DialDialog::FillDialList() {
  LstDialList->clear();
  const int count = shared_.FilterOn ? shared_.FilteredCount : shared_.NoOfRecords;
  if (count > 0) {
    const auto add = [this](const QString& label, Field field) {
      const std::string& number = shared_.FieldValues.at(field);
      if (!number.empty()) LstDialList->AddNumber(label, OneLine(number));
    };
    add(QStringLiteral("Phone1:"), Phone1);
    add(QStringLiteral("Phone2:"), Phone2);
    add(QStringLiteral("Fax:"), Fax);
  }
  LstDialList->setVisible(LstDialList->count() > 0);
  Label1->SetPlainText(LstDialList->count() > 0 ? NumbersHeading()
                                                : QStringLiteral("Type a number to dial."));
}

void DialDialog::LstDialList_Click() {
  const QString text = LstDialList->Text();
  const auto take = [&](const QString& label, Field field) {
    if (text.contains(label)) TxtDialNumber->setText(NumberOf(shared_.FieldValues.at(field)));
  };
  // All three: the last one that is in the text has the number.
  take(QStringLiteral("Phone1"), Phone1);
  take(QStringLiteral("Phone2"), Phone2);
  take(QStringLiteral("Fax"), Fax);
}

void DialDialog::TxtDialNumber_Change() {
  if (Dialing) return;
  const bool isEmpty = TxtDialNumber->text().isEmpty();
  SetDefaultButton(isEmpty ? BtnCancel : BtnDial);
  BtnDial->setEnabled(!isEmpty);
}

void DialDialog::BtnDial_Click() {
  SetDefaultButton(BtnCancel);
  BtnDial->setEnabled(false);
  Dialing = true;
  DialNumber = TxtDialNumber->text().trimmed();
  DialCommand = "AT" + QByteArray::fromStdString(shared_.DialSystem) + DialNumber.toLatin1() + '\r';
  // Where it does not open, the command goes nowhere and the prompt comes all the same: the port
  // was there a moment ago.
  Comm.Open();
  hub_.SetPanel(1, QStringLiteral("Please wait while dialing to ") + DialNumber);
  Comm.DiscardInput();
  Comm.Write(DialCommand);
  DialTimer.start();
  reply_.clear();
  isWaiting_ = true;
}

void DialDialog::Comm_Received() {
  if (!isWaiting_) return;
  // A reply may come in pieces, and between other ones.
  reply_ += Comm.Read().toUpper();
  if (reply_.contains(kNoDialTone)) {
    TellReply(QStringLiteral("There is no Dial Tone, Please check the line, and try again."),
              QStringLiteral("There is no Dial Tone,\r\rPlease check the line, and try again."),
              MsgIcon::Critical, QStringLiteral("No Dial Tone"));
  } else if (reply_.contains(kBusy)) {
    TellReply(QStringLiteral("The line is BUSY. Try calling again later."),
              QStringLiteral("The line is BUSY.\rTry calling again later."), MsgIcon::Exclamation,
              QStringLiteral("BUSY"));
  } else {
    reply_ = reply_.right(static_cast<qsizetype>(qstrlen(kNoDialTone)));
  }
}

void DialDialog::TellReply(const QString& status, const QString& text, MsgIcon icon,
                           const QString& title) {
  isWaiting_ = false;
  DialTimer.stop();
  hub_.SetPanel(1, status);
  msgBoxSnglTxt_.ShowMsg(text, MsgButtons::Left, QStringLiteral("OK"), QString(), icon, title);
  if (!Dialing) return;  // the dialog was closed meanwhile
  StopDialing();
  AskForNumber();
}

void DialDialog::DialTimer_Timer() {
  isWaiting_ = false;
  hub_.SetPanel(1, QStringLiteral("Please pick up the Phone, and either press Enter or click OK."));
  msgBoxSnglTxt_.ShowMsg(
      QStringLiteral("Please pick up the Phone,\rand either press Enter or click OK."),
      MsgButtons::Left, QStringLiteral("OK"), QString(), MsgIcon::Information,
      QStringLiteral("Pick up the Phone"));
  if (!Dialing) return;  // the dialog was closed meanwhile
  // The user has the call on his telephone now: with the port closed the command to hang up goes
  // nowhere.
  ReleasePort();
  Unload();
}

void DialDialog::BtnCancel_Click() {
  if (!Dialing) {
    Unload();
    return;
  }
  StopDialing();
  hub_.SetPanel(1, QStringLiteral("Dial a number."));
}

void DialDialog::StopDialing() {
  isWaiting_ = false;
  DialTimer.stop();
  Comm.Write(kHangUp);
  ReleasePort();
  Dialing = false;
  TxtDialNumber_Change();
  // Enter dials what was given meanwhile, but not the same number again.
  if (TxtDialNumber->text().trimmed() == DialNumber) SetDefaultButton(BtnCancel);
}

void DialDialog::ReleasePort() {
  // A modem lets go of the line when the port is closed, whoever has opened it.
  if (!Comm.IsOpen()) Comm.Open();
  Comm.Close();
}

void DialDialog::Form_Unload() {
  if (Dialing) {
    StopDialing();
  } else {
    ReleasePort();
  }
  hub_.SetPanel(1, QString());
  hub_.EnableMain(true);
}

}  // namespace quillary
