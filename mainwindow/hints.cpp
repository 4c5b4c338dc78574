#include <QMouseEvent>

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

bool MainDialog::eventFilter(QObject* object, QEvent* event) {
  // While a dialog is open, panel 1 is the dialog's.
  if (isEnabled()) {
    if (event->type() == QEvent::MouseMove) {
      // The event also goes to the parents of the control under the mouse: it is looked up.
      const QPoint place = static_cast<QMouseEvent*>(event)->globalPosition().toPoint();
      ShowHint(childAt(mapFromGlobal(place)));
    } else if (event->type() == QEvent::Leave && object == DetailsPanel) {
      Highlight(-1);
    }
  }
  return QMainWindow::eventFilter(object, event);
}

void MainDialog::ShowHint(const QWidget* under) {
  const auto* line = qobject_cast<const DetailLabel*>(under);
  if (line != nullptr && line->isEnabled()) return;  // Label_MouseMove is for these
  Highlight(-1);
  if (under == nullptr || under == centralWidget() || under == FrmFind || under == DetailsFrame) {
    SetPanel(1, QString());
    return;
  }
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
      {BtnFind, QString()},
      {TxtFind, QStringLiteral("Type a text to find")},
      {SrchInLabel, QStringLiteral("Select the fields to search in")},
      {LstNames->viewport(),
       QStringLiteral(
           "Double-Click a name to copy details. Type name's first letter for quick search.")},
      {BtnAbout, QStringLiteral("Show the version of this program.")},
  };
  for (const ControlHint& hint : hints) {
    if (under == hint.Control) SetPanel(1, hint.Text);
  }
}

}  // namespace quillary
