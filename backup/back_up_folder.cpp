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

bool IsFolder(const QString& path) {
  return QDir::isAbsolutePath(path) && QFileInfo(path).isDir();
}

// Blanks and quotation marks around a path came with it from elsewhere, unless there is such a
// folder. What does not begin at the root begins at home.
QString MeantFolder(const QString& typed) {
  if (IsFolder(typed)) return typed;
  QString path = typed.trimmed();
  for (const QChar mark : {QLatin1Char('"'), QLatin1Char('\'')}) {
    if (path.size() > 2 && path.startsWith(mark) && path.endsWith(mark)) {
      path = path.mid(1, path.size() - 2);
    }
  }
  if (path == QLatin1String("~") || path.startsWith(QLatin1String("~/"))) {
    path = QDir::homePath() + path.mid(1);
  }
  return QDir::cleanPath(QDir::home().absoluteFilePath(path));
}

std::string AsProgramFolder(const QString& path) {
  std::string folder = ProgramPath(path.toStdString());
  if (!folder.ends_with('\\')) folder += '\\';
  return folder;
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
          [this](const QString& text) { BtnOK->setEnabled(!text.trimmed().isEmpty()); });
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

std::optional<std::string> BackUpFolder::Choose(const QString& title, Use use) {
  setWindowTitle(title);
  use_ = use;
  tried_.clear();
  return ChooseAgain();
}

std::optional<std::string> BackUpFolder::ChooseAgain() {
  Form_Load();
  MoveToCentre(hub_.MainGeometry());
  ShowModal();
  return std::exchange(chosen_, std::nullopt);
}

// The data's own folder is no place for a backup.
void BackUpFolder::Remember() {
  if (tried_.isEmpty() || IsDataFolder(profile_, shared_, AsProgramFolder(tried_))) return;
  // Without the entry the user chooses again the next time.
  static_cast<void>(
      profile_.WriteEntry(shared_.PrefsFile, shared_.PrefsSection, Key, tried_.toStdString()));
}

void BackUpFolder::Offer(const QString& folder) {
  const bool isThere = CboFolder->findText(folder, Qt::MatchExactly | Qt::MatchCaseSensitive) >= 0;
  if (!folder.isEmpty() && !isThere) CboFolder->addItem(folder);
}

void BackUpFolder::Form_Load() {
  chosen_.reset();
  CboFolder->clear();
  for (const Volume& volume : mountedVolumes_()) {
    if (volume.IsRemovable) Offer(volume.Path);
  }
  const QString last =
      QString::fromStdString(profile_.ReadEntry(shared_.PrefsFile, shared_.PrefsSection, Key));
  Offer(tried_);
  Offer(last);
  // A medium that is there now comes before one that is not.
  QString first = CboFolder->itemText(0);
  if (use_ == Use::Restore && HasSafetyCopy(profile_, shared_)) {
    Offer(QDir::cleanPath(QString::fromStdString(profile_.HostPath(shared_.DataPath))));
  }
  for (const QString& folder : {last, tried_}) {
    if (!folder.isEmpty() && QFileInfo(folder).isDir()) first = folder;
  }
  CboFolder->setEditText(first);
  CboFolder->lineEdit()->selectAll();
  BtnOK->setEnabled(!first.isEmpty());
}

void BackUpFolder::BtnBrowse_Click() {
  const QString typed = MeantFolder(CboFolder->currentText());
  const QString start = QFileInfo(typed).isDir() ? typed : QDir::homePath();
  const QString folder = QFileDialog::getExistingDirectory(this, windowTitle(), start);
  if (folder.isEmpty()) return;
  CboFolder->setEditText(folder);
  BtnOK->setFocus();
}

void BackUpFolder::BtnOK_Click() {
  const QString meant = MeantFolder(CboFolder->currentText());
  std::string folder = AsProgramFolder(meant);
  if (use_ == Use::BackUp && IsDataFolder(profile_, shared_, folder)) {
    msgBoxSnglTxt_.ShowMsg(QStringLiteral("This is the folder of the data files.\r"
                                          "Please choose another one."),
                           MsgButtons::Left, QStringLiteral("OK"), QString(), MsgIcon::Exclamation,
                           windowTitle());
    return;
  }
  tried_ = meant;
  chosen_ = std::move(folder);
  Unload();
}

}  // namespace quillary
