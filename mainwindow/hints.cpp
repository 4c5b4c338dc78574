#include "mainwindow/main_dialog.h"

namespace quillary {

// Every control passes on where the mouse is, also a disabled one and the background.
void MainDialog::TrackMouse() {
  QList<QWidget*> inside = centralWidget()->findChildren<QWidget*>();
  inside.append(centralWidget());
  for (QWidget* control : inside) {
    control->setMouseTracking(true);
    control->installEventFilter(this);
  }
}

void MainDialog::ShowHint(const QWidget* under) {
  const auto* line = qobject_cast<const DetailLabel*>(under);
  if (line != nullptr && line->isEnabled()) return;  // Label_MouseMove is for these
  EndHighlight();
  if (under == DetailsFrame) Highlight(-1);
  struct ControlHint {
    const QWidget* Control;
    QString Text;
  };
  const ControlHint hints[] = {
      {BtnCopy, QStringLiteral("Copy selected details.  (Right Click for options)")},
      {BtnDial, QStringLiteral("Dial a Phone or Fax number.")},
      {BtnSetup, QStringLiteral("Change application's settings.")},
      {BtnExit, QStringLiteral("Exit the application...")},
      {BtnExchange, QStringLiteral("Import, Back-Up, Restore deleted record.")},
      {BtnDelete, QStringLiteral("Click to Delete the selected name.  (Right Click for options)")},
      {BtnEdit, QStringLiteral("Edit details for the selected name.")},
      {BtnNew, shared_.NoOfRecords > 0
                   ? QStringLiteral("Click to Insert New Name. (Right Click for options)")
                   : QStringLiteral("Click to Insert New Name.")},
      {BtnFilter,
       shared_.FilterOn
           ? QStringLiteral("Click to load Filter Dialog. (Right Click for options)")
           : QStringLiteral("Use filter to show part of your data. (Right Click for options)")},
      {BtnFind, btnFindTag_},
      {TxtFind, QStringLiteral("Type a text to find")},
      {SrchInLabel, QStringLiteral("Select the fields to search in")},
      {LstNames->viewport(),
       QStringLiteral(
           "Double-Click a name to copy details. Type name's first letter for quick search.")},
      {BtnAbout, QStringLiteral("Show the version of this program.")},
  };
  // Where there is no hint, that of the control before is gone. What is disabled does nothing that
  // could be told.
  QString text;
  for (const ControlHint& hint : hints) {
    if (under == hint.Control && under->isEnabled()) text = hint.Text;
  }
  SetPanel(1, text);
}

}  // namespace quillary
