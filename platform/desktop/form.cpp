#include "platform/desktop/form.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QLayout>
#include <QTimer>
#include <QWindow>

#include "platform/desktop/menu_key.h"
#include "platform/desktop/placement.h"
#include "platform/desktop/raise_window.h"
#include "platform/desktop/twips.h"

namespace quillary {
namespace {

// What the user did while the program was busy comes to a form that has been hidden meanwhile, too,
// and its buttons would react.
class InputWhileHidden : public QObject {
 public:
  explicit InputWhileHidden(QWidget& form) : QObject(&form), form_(form) {}

  bool eventFilter(QObject* window, QEvent* event) override {
    return (!form_.isVisible() && IsPress(event->type())) || QObject::eventFilter(window, event);
  }

 private:
  // What was pressed before may still be released, else it would count as held down.
  static bool IsPress(QEvent::Type type) {
    return type == QEvent::MouseButtonPress || type == QEvent::MouseButtonDblClick ||
           type == QEvent::KeyPress;
  }

  QWidget& form_;
};

}  // namespace

// A QObject parent would disable the form together with it; only the window system is told who
// the owner is.
Form::Form(const QString& name)
    : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint),
      inputWhileHidden_(new InputWhileHidden(*this)) {
  setObjectName(name);
}

void Form::SetOwner(QWidget& owner) {
  owner_ = owner.window();
}

void Form::SetSize(int width, int height) {
  setFixedSize(Px(width), Px(height));
}

QSize Form::FrameSize() const {
  if (layout() != nullptr) layout()->activate();
  QSize frame = frameGeometry().size() - size();
  const bool framed = !windowFlags().testFlag(Qt::FramelessWindowHint);
  if (framed && frame.isNull() && !owner_.isNull()) {
    frame = owner_->frameGeometry().size() - owner_->size();
  }
  return size() + frame;
}

void Form::MoveTo(QPoint place) {
  move(place);
  // A form that was shown before has a window of the window system; while that is hidden, it takes
  // the place for that of the inside.
  if (windowHandle() != nullptr) windowHandle()->setFramePosition(place);
}

void Form::MoveToCorner(QRect main) {
  MoveTo(PlaceAtCorner(main, FrameSize(), ScreenOf(main)));
}

void Form::MoveToCentre(QRect main) {
  MoveTo(PlaceCentred(main, FrameSize()));
}

void Form::ShowForm() {
  if (!isVisible()) PrepareToShow(owner_);
  show();
  raise();
  if (AcceptsFocus(*this)) activateWindow();
}

void Form::ShowModal() {
  QWidget* active = QApplication::activeWindow();
  PrepareToShow(qobject_cast<Form*>(active) != nullptr ? active : owner_.data());
  exec();
}

void Form::PrepareToShow(QWidget* inFrontOf) {
  loaded_ = true;
  painted_ = false;
  if (defaultButton_ == nullptr) {
    // Else Qt makes the first button the default one.
    for (QPushButton* button : findChildren<QPushButton*>()) button->setAutoDefault(false);
  }
  winId();  // makes the window handle
  windowHandle()->installEventFilter(inputWhileHidden_);
  if (inFrontOf != nullptr && inFrontOf != this) {
    inFrontOf->winId();
    windowHandle()->setTransientParent(inFrontOf->windowHandle());
  }
  if (QWidget* first = FirstControl()) first->setFocus();
}

QWidget* Form::FirstControl() const {
  for (QWidget* control = nextInFocusChain(); control != this;
       control = control->nextInFocusChain()) {
    const bool takesFocus = (control->focusPolicy() & Qt::TabFocus) != 0;
    if (takesFocus && control->isEnabledTo(this) && control->isVisibleTo(this)) return control;
  }
  return nullptr;
}

void Form::Unload() {
  if (!loaded_) return;
  loaded_ = false;
  hide();
  Form_Unload();
}

void Form::HideForm() {
  hide();
}

void Form::SetDefaultButton(QPushButton* button) {
  if (defaultButton_ != nullptr) defaultButton_->setDefault(false);
  defaultButton_ = button;
  if (button != nullptr) button->setDefault(true);
}

void Form::SetCancelButton(QPushButton* button) {
  cancelButton_ = button;
}

void Form::MakePanel() {
  closable_ = false;
  // Shown for a moment only, it may be hidden when the window system tells that it has the
  // keyboard, and Qt would go on sending it what is typed.
  setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus);
}

void Form::WaitUntilSeen() {
  if (painted_) return;
  constexpr int kLongestWaitMs = 100;
  QEventLoop loop;
  QTimer longestWait;
  connect(&longestWait, &QTimer::timeout, &loop, &QEventLoop::quit);
  longestWait.start(kLongestWaitMs);
  untilPainted_ = &loop;
  // A signal that ends the program arrives by a socket: not in the middle of what is being done.
  loop.exec(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
  untilPainted_ = nullptr;
}

void Form::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  // Not isActiveWindow: that is also true while a window in front of or behind this one is active.
  const bool active = QApplication::activeWindow() == this;
  if (event->type() == QEvent::ActivationChange && active && isVisible()) Form_Activate();
}

void Form::closeEvent(QCloseEvent* event) {
  event->setAccepted(closable_);
  if (closable_) Unload();
}

void Form::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
  if (!enter || modifiers != Qt::NoModifier) {
    if (!OpenMenuByKey(*event, *this)) QDialog::keyPressEvent(event);
    return;
  }
  auto* button = qobject_cast<QPushButton*>(focusWidget());
  if (button == nullptr) button = defaultButton_;
  // A button that is disabled does not react to a click.
  if (button != nullptr && button->isVisible()) button->click();
}

void Form::paintEvent(QPaintEvent* event) {
  QDialog::paintEvent(event);
  painted_ = true;
  if (untilPainted_ != nullptr) untilPainted_->quit();
}

void Form::reject() {
  if (cancelButton_ != nullptr && cancelButton_->isVisible()) cancelButton_->click();
}

// When the form is hidden and shown again before the window system has taken the focus away, it
// is not activated again by itself: no Form_Activate, no keyboard.
void Form::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  const bool hasFocus = QGuiApplication::focusWindow() == windowHandle();
  if (hasFocus && QApplication::activeWindow() != this) QApplication::setActiveWindow(this);
}

}  // namespace quillary
