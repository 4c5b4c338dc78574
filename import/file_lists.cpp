#include "import/file_lists.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QKeyEvent>
#include <QRegularExpression>
#include <QSignalBlocker>
#include <QStyle>
#include <utility>

#include "platform/desktop/accessibility.h"

namespace quillary {
namespace {

constexpr int kPathRole = Qt::UserRole;

bool IsOnVolume(const QString& folder, const QString& volume) {
  return folder == volume || volume == QStringLiteral("/") ||
         folder.startsWith(volume + QLatin1Char('/'));
}

// The names that one of the patterns matches.
QRegularExpression NamesOf(const QString& patterns) {
  QStringList expressions;
  for (const QString& pattern : patterns.split(QLatin1Char(';'), Qt::SkipEmptyParts)) {
    QString expression = QRegularExpression::escape(pattern.trimmed());
    if (pattern.trimmed() == QStringLiteral("*.*")) expression = QStringLiteral("\\*");
    expression.replace(QStringLiteral("\\*"), QStringLiteral(".*"));
    expression.replace(QStringLiteral("\\?"), QStringLiteral("."));
    expressions << expression;
  }
  return QRegularExpression(
      QRegularExpression::anchoredPattern(expressions.join(QLatin1Char('|'))),
      QRegularExpression::CaseInsensitiveOption | QRegularExpression::DotMatchesEverythingOption);
}

bool CanBeOpened(const QString& folder) {
  const QFileInfo info(folder);
  return info.isDir() && info.isReadable() && info.isExecutable();
}

bool IsPattern(const QString& name) {
  return name.contains(QLatin1Char('*')) || name.contains(QLatin1Char('?')) ||
         name.contains(QLatin1Char(';'));
}

// The name of what is in the folder, upper and lower case being the same where no name is exactly
// this one; empty if there is none.
QString FindName(const QString& folder, const QString& name, QDir::Filters kind) {
  if (name.isEmpty()) return {};
  const QStringList all = QDir(folder).entryList(kind);
  if (all.contains(name)) return name;
  for (const QString& each : all) {
    if (each.compare(name, Qt::CaseInsensitive) == 0) return each;
  }
  return {};
}

}  // namespace

DriveList::DriveList(QWidget* parent, FindVolumes findVolumes)
    : QComboBox(parent), findVolumes_(std::move(findVolumes)) {
  setObjectName(QStringLiteral("SlctDrive"));
  setAccessibleName(QStringLiteral("Drive"));
  setAccessibleDescription(QStringLiteral("Drive"));  // where the name is the one that is chosen
  setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  connect(this, &QComboBox::activated, this, &DriveList::Change);
}

void DriveList::Refresh() {
  const QString drive = Drive();
  clear();
  for (const Volume& volume : findVolumes_()) {
    const auto icon = volume.IsRemovable ? QStyle::SP_DriveFDIcon : QStyle::SP_DriveHDIcon;
    addItem(style()->standardIcon(icon), volume.Name, QDir::cleanPath(volume.Path));
  }
  setCurrentIndex(findData(drive));
}

void DriveList::ShowDriveOf(const QString& folder) {
  int best = -1;
  for (int i = 0; i < count(); ++i) {
    const QString volume = itemData(i).toString();
    if (!IsOnVolume(folder, volume)) continue;
    if (best < 0 || volume.size() > itemData(best).toString().size()) best = i;
  }
  setCurrentIndex(best);
}

void DriveList::showPopup() {
  Refresh();
  QComboBox::showPopup();
}

DirList::DirList(QWidget* parent) : QListWidget(parent) {
  setObjectName(QStringLiteral("SlctDir"));
  setAccessibleName(QStringLiteral("Folders"));
  connect(this, &QListWidget::itemDoubleClicked, this,
          [this](QListWidgetItem* item) { Open(*item); });
}

void DirList::Open(const QListWidgetItem& item) {
  if (!SetPath(item.data(kPathRole).toString())) QApplication::beep();
}

bool DirList::SetPath(const QString& path) {
  const QDir folder(QDir::cleanPath(path));
  if (!CanBeOpened(folder.path())) return false;
  path_ = folder.absolutePath();
  clear();
  QString above = QStringLiteral("/");
  AddFolder(above, above, 0);
  int depth = 1;
  for (const QString& name : path_.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
    above = QDir(above).filePath(name);
    AddFolder(name, above, depth++);
  }
  setCurrentRow(depth - 1);
  const QDir::Filters folders = QDir::Dirs | QDir::NoDotAndDotDot;
  for (const QString& name :
       folder.entryList(folders, QDir::Name | QDir::IgnoreCase | QDir::LocaleAware)) {
    AddFolder(name, folder.filePath(name), depth);
  }
  scrollToItem(currentItem(), QAbstractItemView::PositionAtCenter);
  Q_EMIT Change();
  return true;
}

void DirList::AddFolder(const QString& name, const QString& path, int depth) {
  constexpr int kIndent = 2;
  const bool isOpen = IsOnVolume(path_, path);
  auto* item = new QListWidgetItem(
      style()->standardIcon(isOpen ? QStyle::SP_DirOpenIcon : QStyle::SP_DirClosedIcon),
      QString(depth, QLatin1Char(' ')).repeated(kIndent) + name, this);
  item->setData(kPathRole, path);
  item->setData(Qt::AccessibleTextRole, name);
}

void DirList::focusInEvent(QFocusEvent* event) {
  QListWidget::focusInEvent(event);
  TellFocus(*this, currentRow());
}

// Enter would otherwise be the default button's.
void DirList::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && currentItem() != nullptr) {
    Open(*currentItem());
    return;
  }
  QListWidget::keyPressEvent(event);
}

FileList::FileList(QWidget* parent) : QListWidget(parent) {
  setObjectName(QStringLiteral("SlctFile"));
  setAccessibleName(QStringLiteral("Files"));
  setUniformItemSizes(true);
  setTextElideMode(Qt::ElideMiddle);  // the end tells what kind of file it is
  connect(this, &QListWidget::itemSelectionChanged, this, [this] {
    if (!FileName().isEmpty()) Q_EMIT Click();
  });
  connect(this, &QListWidget::itemClicked, this, &FileList::Click);
  connect(this, &QListWidget::itemDoubleClicked, this, &FileList::DblClick);
}

void FileList::focusInEvent(QFocusEvent* event) {
  QListWidget::focusInEvent(event);
  if (!FileName().isEmpty()) TellFocus(*this, currentRow());
}

QString FileList::FileName() const {
  const QList<QListWidgetItem*> selected = selectedItems();
  return selected.isEmpty() ? QString() : selected.first()->text();
}

void FileList::SetPath(const QString& path) {
  if (path != path_) clear();
  path_ = path;
  Refresh();
}

void FileList::SetPattern(const QString& pattern) {
  pattern_ = pattern;
  Refresh();
}

void FileList::Refresh() {
  const QRegularExpression names = NamesOf(pattern_);
  const QStringList files =
      QDir(path_)
          .entryList(QDir::Files, QDir::Name | QDir::IgnoreCase | QDir::LocaleAware)
          .filter(names);
  QStringList listed;
  for (int i = 0; i < count(); ++i) listed << item(i)->text();
  // The list stays where it was scrolled to.
  if (files == listed) return;
  const QString selected = FileName();
  const QSignalBlocker silence(this);
  clear();
  addItems(files);
  const qsizetype row = files.indexOf(selected);
  if (row >= 0) setCurrentRow(static_cast<int>(row));
}

bool FileList::Lists(const QString& name) const {
  for (int i = 0; i < count(); ++i) {
    if (item(i)->text() == name) return true;
  }
  return false;
}

bool FileList::SetFileName(const QString& text) {
  const auto absolute = [this](const QString& name) {
    return QDir::cleanPath(QDir(path_).absoluteFilePath(name));
  };
  QString name = text.trimmed();
  if (name.isEmpty()) return false;
  if (!QFileInfo::exists(absolute(name))) name.replace(QLatin1Char('\\'), QLatin1Char('/'));
  QString folder = absolute(name);
  QString last;  // the pattern or file behind the folder
  if (!QFileInfo(folder).isDir()) {
    last = name.section(QLatin1Char('/'), -1);
    folder = absolute(name.chopped(last.size()));
  }
  // A file may have a name that looks like a pattern.
  const QString file = FindName(folder, last, QDir::Files);
  const QString inside = FindName(folder, last, QDir::Dirs | QDir::NoDotAndDotDot);
  if (file.isEmpty() && !inside.isEmpty()) {
    folder = QDir(folder).filePath(inside);
    last.clear();
  }
  const bool isPattern = IsPattern(last) && file.isEmpty();
  const bool isFile = !last.isEmpty() && !isPattern;
  if (!CanBeOpened(folder) || (isFile && file.isEmpty())) return false;

  SetPath(folder);
  if (isPattern) SetPattern(last);
  if (!isFile) {
    Q_EMIT PatternChange();
    return true;
  }
  if (!Lists(file)) SetPattern(QStringLiteral("*.*"));
  for (int i = 0; i < count(); ++i) {
    if (item(i)->text() == file) setCurrentRow(i);
  }
  Q_EMIT Click();
  return true;
}

}  // namespace quillary
