#include "backup/back_up_folder.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <utility>

#include "platform/desktop/twips.h"
#include "platform/file_names.h"
#include "store/backup.h"

namespace quillary {
namespace {

constexpr const char* Key = "BackUpFolder";

QPushButton* MakeButton(QWidget* parent, const QString& name, const QString& caption) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(name);
  button->setMinimumSize(Px(1215), Px(375));
  return button;
}

}  // namespace

BackUpFolder::BackUpFolder(SharedData& shared, Profile& profile, Hub& hub,
                           MsgBoxSnglTxt& msgBoxSnglTxt,
                           std::function<std::vector<Volume>()> mountedVolumes)
    : Form(QStringLiteral("BackUpFolder")),
      shared_(shared),
      profile_(profile),
      hub_(hub),
      msgBoxSnglTxt_(msgBoxSnglTxt),
      mountedVolumes_(std::move(mountedVolumes)),
      CboFolder(new QComboBox(this)),
      BtnBrowse(MakeButton(this, QStringLiteral("BtnBrowse"), QStringLiteral("&Browse..."))),
      BtnOK(MakeButton(this, QStringLiteral("BtnOK"), QStringLiteral("OK"))),
      BtnCancel(MakeButton(this, QStringLiteral("BtnCancel"), QStringLiteral("Cancel"))) {
  CboFolder->setObjectName(QStringLiteral("CboFolder"));
  CboFolder->setAccessibleName(QStringLiteral("Folder of the backup"));
  CboFolder->setEditable(true);
  CboFolder->setInsertPolicy(QComboBox::NoInsert);
  // Paths that differ in case alone are different folders.
  CboFolder->setCompleter(nullptr);
  LayOut();
  connect(CboFolder, &QComboBox::editTextChanged, BtnOK,
          [this](const QString& text) { BtnOK->setEnabled(!text.isEmpty()); });
  connect(BtnBrowse, &QPushButton::clicked, this, &BackUpFolder::BtnBrowse_Click);
  connect(BtnOK, &QPushButton::clicked, this, &BackUpFolder::BtnOK_Click);
  connect(BtnCancel, &QPushButton::clicked, this, &BackUpFolder::Unload);
  SetDefaultButton(BtnOK);
  SetCancelButton(BtnCancel);
  SetOwner(hub.MainWindow());
}

void BackUpFolder::LayOut() {
  auto* label = new QLabel(QStringLiteral("&Folder or medium of the backup:"), this);
  label->setBuddy(CboFolder);
  CboFolder->setMinimumWidth(Px(5000));

  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  buttons->addWidget(BtnOK);
  buttons->addSpacing(Px(285));
  buttons->addWidget(BtnCancel);
  buttons->addStretch(1);

  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(Px(180), Px(180), Px(180), Px(165));
  grid->addWidget(label, 0, 0, 1, 2);
  grid->addWidget(CboFolder, 1, 0);
  grid->addWidget(BtnBrowse, 1, 1);
  grid->setRowMinimumHeight(2, Px(165));
  grid->addLayout(buttons, 3, 0, 1, 2);
  grid->setSizeConstraint(QLayout::SetFixedSize);
}

std::optional<std::string> BackUpFolder::Choose(const QString& title) {
  setWindowTitle(title);
  Form_Load();
  MoveToCentre(hub_.MainGeometry());
  ShowModal();
  return std::exchange(chosen_, std::nullopt);
}

void BackUpFolder::Form_Load() {
  chosen_.reset();
  CboFolder->clear();
  for (const Volume& volume : mountedVolumes_()) {
    if (volume.IsRemovable) CboFolder->addItem(volume.Path);
  }
  const QString last =
      QString::fromStdString(profile_.ReadEntry(shared_.PrefsFile, shared_.PrefsSection, Key));
  if (!last.isEmpty() && CboFolder->findText(last, Qt::MatchExactly | Qt::MatchCaseSensitive) < 0) {
    CboFolder->addItem(last);
  }
  // A medium that is there now comes before one that is not.
  const bool isLastThere = !last.isEmpty() && QFileInfo(last).isDir();
  CboFolder->setEditText(isLastThere ? last : CboFolder->itemText(0));
  CboFolder->lineEdit()->selectAll();
  BtnOK->setEnabled(!CboFolder->currentText().isEmpty());
}

void BackUpFolder::BtnBrowse_Click() {
  const QString typed = CboFolder->currentText();
  const QString start = QFileInfo(typed).isDir() ? typed : QDir::homePath();
  const QString folder = QFileDialog::getExistingDirectory(this, windowTitle(), start);
  if (folder.isEmpty()) return;
  CboFolder->setEditText(folder);
  BtnOK->setFocus();
}

void BackUpFolder::BtnOK_Click() {
  const std::string typed = CboFolder->currentText().toStdString();
  std::string folder = ProgramPath(typed);
  if (!folder.ends_with('\\')) folder += '\\';
  if (IsDataFolder(profile_, shared_, folder)) {
    msgBoxSnglTxt_.ShowMsg(QStringLiteral("This is the folder of the data files.\r"
                                          "Please choose another one."),
                           MsgButtons::Left, QStringLiteral("OK"), QString(), MsgIcon::Exclamation,
                           windowTitle());
    return;
  }
  // Without the entry the user chooses again the next time.
  static_cast<void>(profile_.WriteEntry(shared_.PrefsFile, shared_.PrefsSection, Key, typed));
  chosen_ = std::move(folder);
  Unload();
}

}  // namespace quillary
