#include "dialogs/file_in_use.h"

#include <QFrame>
#include <QPushButton>
#include <QStyle>

#include "auxiliary/pictures.h"
#include "auxiliary/plain_label.h"
#include "platform/desktop/twips.h"

namespace quillary {
namespace {

PlainLabel* MakeText(QWidget* parent, const QString& name, const QString& text, int top,
                     int height) {
  auto* label = new PlainLabel(parent, name, text);
  label->setWordWrap(true);
  label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
  Place(*label, 1140, top, 4860, height);
  return label;
}

}  // namespace

FileInUse::FileInUse(SharedData& shared, SharingGuard& guard, Hub& hub,
                     MsgBoxSnglTxt& msgBoxSnglTxt, MsgBoxDblTxt& msgBoxDblTxt)
    : Form(QStringLiteral("FileInUse")),
      shared_(shared),
      guard_(guard),
      hub_(hub),
      msgBoxSnglTxt_(msgBoxSnglTxt),
      msgBoxDblTxt_(msgBoxDblTxt) {
  setWindowTitle(QStringLiteral("Data File In Use"));
  auto* Frame1 = new QFrame(this);
  Frame1->setObjectName(QStringLiteral("Frame1"));
  Frame1->setFrameShape(QFrame::StyledPanel);
  Place(*Frame1, 180, 150, 6180, 2655);
  auto* Image1 = new QLabel(Frame1);
  Image1->setObjectName(QStringLiteral("Image1"));
  Image1->setAccessibleName(QStringLiteral("Exclamation"));
  Image1->setPixmap(Picture(QStringLiteral("exclamation"), QSize(48, 48), *this));
  Image1->setGeometry(Px(240), Px(240), 48, 48);

  MakeText(Frame1, QStringLiteral("Label1"),
           QStringLiteral("It seems that other application (Quillary for WinWord ?) is currently "
                          "using the data file."),
           210, 465);
  MakeText(Frame1, QStringLiteral("Label2"),
           QStringLiteral("To prevent data errors all changes to the data will be dissabled now, "
                          "in both applications."),
           780, 465);
  MakeText(Frame1, QStringLiteral("Label3"),
           QStringLiteral("Use the 'Previous crash recover' option to enable editing.\r"
                          "Select this option only if you are absolutely sure that no other "
                          "application is currently using the data.\r"
                          "Improper use may cause you lost of data !"),
           1350, 1215);

  ChkCrashRecover = new QCheckBox(QStringLiteral("Previous crash recover"), this);
  ChkCrashRecover->setObjectName(QStringLiteral("ChkCrashRecover"));
  Place(*ChkCrashRecover, 180, 2940, 4500, 285);
  connect(ChkCrashRecover, &QCheckBox::clicked, this, &FileInUse::ChkCrashRecover_Click);
  auto* BtnOK = new QPushButton(QStringLiteral("OK"), this);
  BtnOK->setObjectName(QStringLiteral("BtnOK"));
  Place(*BtnOK, 5145, 2940, 1215, 375);
  connect(BtnOK, &QPushButton::clicked, this, &FileInUse::BtnOK_Click);

  SetDefaultButton(BtnOK);
  SetSize(6540, 3480);
  SetOwner(hub.MainWindow());
}

void FileInUse::ShowFileInUse() {
  Form_Load();
  MoveToCentre(hub_.MainGeometry());
  ShowModal();
}

void FileInUse::Form_Load() {
  ChkCrashRecover->setChecked(false);
}

void FileInUse::ChkCrashRecover_Click() {
  if (!ChkCrashRecover->isChecked()) return;
  msgBoxDblTxt_.ShowMsg(
      QStringLiteral("Are you absolutely sure that no other application is currently using the "
                     "data file?"),
      QStringLiteral("Improper use of the 'Previous crash recover' option may cause you lost of "
                     "data!"),
      MsgButtons::BothRightDefault, QStringLiteral("Yes"), QStringLiteral("No"),
      MsgIcon::Exclamation, QStringLiteral("Are you sure ?"));
  if (shared_.MsgBoxAnswer != 0) return;
  shared_.MsgBoxAnswer = 1;
  ChkCrashRecover->setChecked(false);
}

void FileInUse::BtnOK_Click() {
  const RunTimeError error = ChkCrashRecover->isChecked() ? guard_.ResetUses() : RunTimeError::None;
  if (error == RunTimeError::None) {
    Unload();
    return;
  }
  msgBoxSnglTxt_.ShowMsg(QStringLiteral("The data file could not be changed:\r") +
                             QString::fromStdString(RunTimeErrorText(error)) + QLatin1Char('.'),
                         MsgButtons::Left, QStringLiteral("OK"), QString(), MsgIcon::Critical,
                         windowTitle());
}

}  // namespace quillary
