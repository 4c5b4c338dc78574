#pragma once

#include <QComboBox>
#include <QListWidget>
#include <QString>
#include <functional>
#include <vector>

#include "platform/desktop/volumes.h"

namespace quillary {

// The three lists in which the user finds a file. Paths are paths of the host; each list can be
// used with the keyboard alone.

// The drives: the volumes that the user knows.
class DriveList : public QComboBox {
  Q_OBJECT

 public:
  using FindVolumes = std::function<std::vector<Volume>()>;
  DriveList(QWidget* parent, FindVolumes findVolumes);

  // The top folder of the selected drive.
  QString Drive() const { return currentData().toString(); }
  // Selects the drive that the folder is on; Change is not emitted.
  void ShowDriveOf(const QString& folder);
  // Looks for the drives anew, as it does when it drops down.
  void Refresh();

  void showPopup() override;

 Q_SIGNALS:
  // The user selected a drive.
  void Change();

 private:
  FindVolumes findVolumes_;
};

// The folders: those on the way to the open one, and those in it. A double click or Enter opens
// one; where it cannot be opened there is a beep.
class DirList : public QListWidget {
  Q_OBJECT

 public:
  explicit DirList(QWidget* parent);

  QString Path() const { return path_; }
  // Emits Change. False, and nothing has changed, where the folder cannot be opened.
  bool SetPath(const QString& path);

 Q_SIGNALS:
  void Change();

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Open(const QListWidgetItem& item);
  void AddFolder(const QString& name, const QString& path, int depth);

  QString path_;
};

// The files of a folder whose names match a pattern: "*" for any characters, "?" for one, several
// patterns separated by ";". Upper and lower case are the same in a pattern, and "*.*" is every
// file.
class FileList : public QListWidget {
  Q_OBJECT

 public:
  explicit FileList(QWidget* parent);

  QString Path() const { return path_; }
  QString Pattern() const { return pattern_; }
  // The selected file, or the empty text.
  QString FileName() const;
  void SetPath(const QString& path);
  void SetPattern(const QString& pattern);
  // Takes a text that the user typed: a folder is opened; a pattern, with or without a folder
  // before it, is applied; a file is selected. False where there is nothing of that name.
  bool SetFileName(const QString& text);
  // Whether exactly this name is listed.
  bool Lists(const QString& name) const;
  // Looks for the files anew; the selection stays where it can.
  void Refresh();

 Q_SIGNALS:
  // The user, or SetFileName, selected a file.
  void Click();
  void DblClick();
  // SetFileName opened a folder or applied a pattern: the files listed are those of the pattern.
  void PatternChange();

 protected:
  void focusInEvent(QFocusEvent* event) override;

 private:
  QString path_;
  QString pattern_;
};

}  // namespace quillary
