#include "mainwindow/quill_mnu.h"

#include <QFontMetrics>
#include <QString>

#include "app/name_line.h"
#include "auxiliary/one_line.h"
#include "platform/desktop/twips.h"

namespace quillary {

namespace {

QAction* AddItem(QMenu& menu, const QString& name, const QString& caption) {
  QAction* item = menu.addAction(caption);
  item->setObjectName(name);
  return item;
}

template <std::size_t N>
std::array<QAction*, N> AddArray(QMenu& menu, const QString& name, const QString (&captions)[N]) {
  std::array<QAction*, N> items{};
  for (std::size_t i = 0; i < N; ++i) {
    items[i] = AddItem(menu, QStringLiteral("%1(%2)").arg(name).arg(i), captions[i]);
  }
  return items;
}

QMenu* AddSubmenu(QMenu& menu, const QString& name, const QString& caption) {
  QMenu* submenu = menu.addMenu(caption);
  submenu->setObjectName(name);
  submenu->setAccessibleName(caption);
  return submenu;
}

void AddSeparator(QMenu& menu, const QString& name) {
  menu.addSeparator()->setObjectName(name);
}

// A record's text as a caption: an ampersand would mark an access key.
QString AsCaption(const std::string& text, const QMenu& menu) {
  constexpr int widest = 6000;  // twips
  return QFontMetrics(menu.font())
      .elidedText(OneLine(text), Qt::ElideRight, Px(widest))
      .replace(QLatin1Char('&'), QStringLiteral("&&"));
}

}  // namespace

QuillMnu::QuillMnu() {
  MakeNameStyle();
  MakeLstNames();
}

void QuillMnu::MakeNameStyle() {
  MnuNameStyle.setObjectName(QStringLiteral("MnuNameStyle"));
  MnuNameStyle.setAccessibleName(QStringLiteral("Name style"));
  for (int i = 0; i < 4; ++i) {
    QAction* item =
        AddItem(MnuNameStyle, QStringLiteral("MnuNameStyleArray(%1)").arg(i), QString());
    connect(item, &QAction::triggered, this, [this, i] { Q_EMIT MnuNameStyleArray_Click(i); });
    MnuNameStyleArray.at(static_cast<std::size_t>(i)) = item;
  }
  // The line stays above "Cancel" when the record offers no style.
  MnuNameStyle.setSeparatorsCollapsible(false);
  MnuNameStyleArray[4] = MnuNameStyle.addSeparator();
  MnuNameStyleArray[5] =
      AddItem(MnuNameStyle, QStringLiteral("MnuNameStyleArray(5)"), QStringLiteral("Cancel"));
}

void QuillMnu::MakeLstNames() {
  QMenu& menu = MnuLstNames;
  menu.setObjectName(QStringLiteral("MnuLstNames"));
  menu.setAccessibleName(QStringLiteral("Names"));

  MnuCopy = AddSubmenu(menu, QStringLiteral("MnuCopy"), QStringLiteral("Copy"));
  MnuCopyArray = AddArray(*MnuCopy, QStringLiteral("MnuCopyArray"),
                          {QStringLiteral("Selected Details"), QStringLiteral("All Details"),
                           QStringLiteral("Copy && Paste into WinWord")});
  // Until a word processor is found.
  MnuCopyArray[2]->setEnabled(false);
  MnuFilter = AddSubmenu(menu, QStringLiteral("MnuFilter"), QStringLiteral("Filter"));
  MnuFilterArray = AddArray(*MnuFilter, QStringLiteral("MnuFilterArray"),
                            {QStringLiteral("Filter - ON"), QStringLiteral("Filter - OFF")});
  MnuDial = AddItem(menu, QStringLiteral("MnuDial"), QStringLiteral("Dial"));
  AddSeparator(menu, QStringLiteral("MnuSprator0"));

  MnuEdit = AddItem(menu, QStringLiteral("MnuEdit"), QStringLiteral("Edit"));
  MnuNew = AddSubmenu(menu, QStringLiteral("MnuNew"), QStringLiteral("New"));
  MnuNewArray =
      AddArray(*MnuNew, QStringLiteral("MnuNewArray"),
               {QStringLiteral("Insert New Name"), QStringLiteral("Duplicate selected Name")});
  MnuDelete = AddSubmenu(menu, QStringLiteral("MnuDelete"), QStringLiteral("Delete"));
  MnuDeleteArray = AddArray(
      *MnuDelete, QStringLiteral("MnuDeleteArray"),
      {QStringLiteral("Delete selected Name"), QStringLiteral("Delete with no confirmation !")});
  AddSeparator(menu, QStringLiteral("MnuSprator1"));

  MakeExchange();
  AddSeparator(menu, QStringLiteral("MnuSprator2"));

  MnuView = AddSubmenu(menu, QStringLiteral("MnuView"), QStringLiteral("View"));
  MnuViewArray = AddArray(*MnuView, QStringLiteral("MnuViewArray"),
                          {QStringLiteral("Name"), QStringLiteral("Company")});
  AddSeparator(menu, QStringLiteral("MnuSprator3"));
  MnuTipOfDay = AddItem(menu, QStringLiteral("MnuTipOfDay"), QStringLiteral("Tip of The Day"));
  AddSeparator(menu, QStringLiteral("MnuSprator4"));
  MnuAbout = AddItem(menu, QStringLiteral("MnuAbout"), QStringLiteral("About"));

  for (QAction* item : {MnuFilterArray[0], MnuFilterArray[1], MnuViewArray[0], MnuViewArray[1]}) {
    item->setCheckable(true);
    // The mark tells what is in force, which choosing an item does not change by itself:
    // it is taken back before the command starts, which sets it.
    connect(item, &QAction::triggered, item, &QAction::toggle);
  }
  for (int i = 0; i < 3; ++i) {
    connect(MnuCopyArray.at(static_cast<std::size_t>(i)), &QAction::triggered, this,
            [this, i] { Q_EMIT MnuCopyArray_Click(i); });
  }
  for (int i = 0; i < 2; ++i) {
    connect(MnuViewArray.at(static_cast<std::size_t>(i)), &QAction::triggered, this,
            [this, i] { Q_EMIT MnuViewArray_Click(i); });
  }
}

void QuillMnu::MakeExchange() {
  MnuExchange = AddSubmenu(MnuLstNames, QStringLiteral("MnuExchange"), QStringLiteral("Exchange"));
  QMenu* reports =
      AddSubmenu(*MnuExchange, QStringLiteral("MnuExchangeArray(0)"), QStringLiteral("Reports"));
  MnuReports =
      AddItem(*reports, QStringLiteral("MnuReports"), QStringLiteral("Create Labels in WinWord"));
  QMenu* import =
      AddSubmenu(*MnuExchange, QStringLiteral("MnuExchangeArray(1)"), QStringLiteral("Import"));
  MnuImport = AddArray(
      *import, QStringLiteral("MnuImport"),
      {QStringLiteral("Append to existing data"), QStringLiteral("Replace existing data")});
  QMenu* backUp =
      AddSubmenu(*MnuExchange, QStringLiteral("MnuExchangeArray(2)"), QStringLiteral("Back Up"));
  MnuBackUp = AddArray(*backUp, QStringLiteral("MnuBackUp"),
                       {QStringLiteral("Create BackUp"), QStringLiteral("Restore from BackUp")});
  QAction* restoreDeleted = AddItem(*MnuExchange, QStringLiteral("MnuExchangeArray(3)"),
                                    QStringLiteral("Restore Deleted Record"));
  QAction* line = MnuExchange->addSeparator();
  line->setObjectName(QStringLiteral("MnuExchangeArray(4)"));
  QAction* cancel =
      AddItem(*MnuExchange, QStringLiteral("MnuExchangeArray(5)"), QStringLiteral("Cancel"));
  MnuExchangeArray = {reports->menuAction(),
                      import->menuAction(),
                      backUp->menuAction(),
                      restoreDeleted,
                      line,
                      cancel};
  ShowCancel(false);
  connect(MnuExchange, &QMenu::aboutToHide, this, [this] { ShowCancel(false); });
}

void QuillMnu::Connect(Commands& commands) {
  const auto start = [this, &commands](QAction* item, void (Commands::*command)()) {
    connect(item, &QAction::triggered, this, [&commands, command] { (commands.*command)(); });
  };
  start(MnuFilterArray[0], &Commands::ShowFilterDialog);
  start(MnuFilterArray[1], &Commands::FilterOff);
  start(MnuDial, &Commands::OpenDialer);
  start(MnuEdit, &Commands::ShowEditDialog);
  start(MnuNewArray[0], &Commands::ShowNewDialog);
  start(MnuNewArray[1], &Commands::ShowDuplicateDialog);
  start(MnuDeleteArray[0], &Commands::ShowDeleteDialog);
  start(MnuDeleteArray[1], &Commands::DeleteWithoutConfirmation);
  start(MnuExchangeArray[3], &Commands::GetDeletedNamesList);
  for (int i = 0; i < 2; ++i) {
    connect(MnuImport.at(static_cast<std::size_t>(i)), &QAction::triggered, this,
            [&commands, i] { commands.MnuImport_Click(i); });
  }
  start(MnuBackUp[0], &Commands::BackUpToDisk);
  start(MnuBackUp[1], &Commands::RestoreFromDisk);
  start(MnuTipOfDay, &Commands::ShowTipOfDay);
  start(MnuAbout, &Commands::ShowAboutDialog);
}

void QuillMnu::SetReadOnly(bool readOnly) {
  MnuEdit->setEnabled(!readOnly);
  MnuNew->menuAction()->setEnabled(!readOnly);
  MnuDelete->menuAction()->setEnabled(!readOnly);
  MnuExchangeArray[1]->setEnabled(!readOnly);
  MnuBackUp[1]->setEnabled(!readOnly);
  if (readOnly) EnableRestore(false);
}

void QuillMnu::EnableRestore(bool enable) {
  MnuExchangeArray[3]->setEnabled(enable);
}

void QuillMnu::ShowCancel(bool show) {
  MnuExchangeArray[4]->setVisible(show);
  MnuExchangeArray[5]->setVisible(show);
}

void QuillMnu::SetChecks(std::uint8_t viewMode, bool filterOn) {
  MnuViewArray[0]->setChecked(viewMode == 0);
  MnuViewArray[1]->setChecked(viewMode != 0);
  MnuFilterArray[0]->setChecked(filterOn);
  MnuFilterArray[1]->setChecked(!filterOn);
}

void QuillMnu::SetNameStyles(const FieldArray& fields) {
  for (int i = 0; i < 4; ++i) {
    QAction* item = MnuNameStyleArray.at(static_cast<std::size_t>(i));
    const auto name = OfferedName(i, fields);
    item->setVisible(name.has_value());
    item->setText(AsCaption(name.value_or(std::string()), MnuNameStyle));
  }
}

}  // namespace quillary
