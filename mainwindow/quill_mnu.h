#pragma once

#include <QAction>
#include <QMenu>
#include <QObject>
#include <array>
#include <cstdint>

#include "app/commands.h"
#include "store/store_data.h"

namespace quillary {

// The pop-up menus of the main window. Each can be popped up by itself, submenus too.
class QuillMnu : public QObject {
  Q_OBJECT

 public:
  QuillMnu();

  // Ties the items to the commands they start.
  void Connect(Commands& commands);

  // Disables (or enables) the items that change data. What this version lacks stays disabled.
  void SetReadOnly(bool readOnly);
  void SetChecks(std::uint8_t viewMode, bool filterOn);
  // "Restore Deleted Record".
  void EnableRestore(bool enable);
  // "Cancel" at the end of the exchange menu; it goes when the menu is closed.
  void ShowCancel(bool show);
  // Captions and visibility of the name styles, for a record's fields.
  void SetNameStyles(const FieldArray& fields);

  QMenu MnuNameStyle;
  std::array<QAction*, 6> MnuNameStyleArray{};

  QMenu MnuLstNames;
  QMenu* MnuCopy = nullptr;
  std::array<QAction*, 3> MnuCopyArray{};
  QMenu* MnuFilter = nullptr;
  std::array<QAction*, 2> MnuFilterArray{};
  QAction* MnuDial = nullptr;
  QAction* MnuEdit = nullptr;
  QMenu* MnuNew = nullptr;
  std::array<QAction*, 2> MnuNewArray{};
  QMenu* MnuDelete = nullptr;
  std::array<QAction*, 2> MnuDeleteArray{};
  QMenu* MnuExchange = nullptr;
  std::array<QAction*, 6> MnuExchangeArray{};  // 0 to 2 are submenus, 4 and 5 a line and "Cancel"
  QAction* MnuReports = nullptr;
  std::array<QAction*, 2> MnuImport{};
  std::array<QAction*, 2> MnuBackUp{};
  QMenu* MnuView = nullptr;
  std::array<QAction*, 2> MnuViewArray{};
  QAction* MnuTipOfDay = nullptr;
  QAction* MnuAbout = nullptr;

 Q_SIGNALS:
  // Name style 0 to 3 was chosen.
  void MnuNameStyleArray_Click(int index);
  // 0 the selected details, 1 all, 2 the selected ones into the word processor.
  void MnuCopyArray_Click(int index);
  // 0 by name, 1 by company.
  void MnuViewArray_Click(int index);

 private:
  void MakeNameStyle();
  void MakeLstNames();
  void MakeExchange();
};

}  // namespace quillary
