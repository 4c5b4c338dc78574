#include "platform/desktop/accessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QApplication>
#include <QPointer>
#include <QTimer>

namespace quillary {
namespace {

// `type` is the class of the object or one that it is derived from, in turn.
QAccessibleInterface* MakeInterface(const QString& type, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr) return nullptr;
  if (type == QStringLiteral("QFrame")) return new QAccessibleWidget(widget, QAccessible::Grouping);
  if (type == QStringLiteral("QSizeGrip")) {
    return new QAccessibleWidget(widget, QAccessible::Graphic, QStringLiteral("Size grip"));
  }
  return nullptr;
}

bool HasFocusWithin(const QWidget& control) {
  const QWidget* focused = QApplication::focusWidget();
  return focused != nullptr && (focused == &control || focused->isAncestorOf(&control));
}

}  // namespace

void InstallAccessibleRoles() {
  QAccessible::installFactory(MakeInterface);
}

void SetAccessibleText(QWidget& control, const QString& caption, const QString& text) {
  const QString name = text.isEmpty() ? caption : caption + QStringLiteral(": ") + text;
  if (name != control.accessibleName()) control.setAccessibleName(name);
}

void TellFocus(QWidget& control, int child) {
  if (!QAccessible::isActive()) return;
  QTimer::singleShot(0, [control = QPointer<QWidget>(&control), child] {
    if (control.isNull() || !HasFocusWithin(*control)) return;
    QAccessibleEvent focus(control, QAccessible::Focus);
    focus.setChild(child);
    QAccessible::updateAccessibility(&focus);
  });
}

}  // namespace quillary
