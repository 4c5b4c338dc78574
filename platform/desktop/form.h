#pragma once

#include <QDialog>
#include <QEventLoop>
#include <QPointer>
#include <QPushButton>
#include <QRect>
#include <QString>

namespace quillary {

// A window of the program. It is made once and shown many times; each showing ends with an unload,
// whether by one of its buttons, by Esc or by its title bar.
//
// Enter presses the button that has the focus, otherwise the default button; Esc presses the
// cancel button. A button that is hidden or disabled is not pressed, and a form without a cancel
// button ignores Esc. What the user did while the form was to be seen does nothing once it is
// hidden. Shift+F10 opens the menu of the control that has the focus.
//
// A form is as large as SetSize or its layout says; only one that sets its sizes itself (with
// resize and without SetSize) can be resized by the user.
class Form : public QDialog {
  Q_OBJECT

 public:
  // `name` becomes the objectName.
  explicit Form(const QString& name);

  // Keeps this window in front of `owner`, without being disabled with it.
  void SetOwner(QWidget& owner);

  // The size of the form's inside, in twips; it stays fixed.
  void SetSize(int width, int height);
  // The form with its frame, in pixels. Before its first showing the frame is taken to be the
  // owner's.
  QSize FrameSize() const;
  // Moves the form so that the top left corner of its frame is there, whether it is shown or not.
  void MoveTo(QPoint place);
  // Moves the form to its place in or over the main window, whose geometry is given with its frame
  // (see placement.h).
  void MoveToCorner(QRect main);
  void MoveToCentre(QRect main);

  // Shows the form without waiting, in front and with the keyboard. FirstControl has the focus.
  void ShowForm();
  // Shows the form and returns when it is hidden; every other window takes no input meanwhile. It
  // stands in front of the form that was active. Not to be called while the form is shown.
  void ShowModal();
  // Hides the form and runs Form_Unload, once per showing.
  void Unload();
  // Hides the form without unloading it.
  void HideForm();
  bool IsLoaded() const { return loaded_; }

  // Null for none.
  void SetDefaultButton(QPushButton* button);
  void SetCancelButton(QPushButton* button);
  QPushButton* DefaultButton() const { return defaultButton_; }

 protected:
  // Each time the form becomes the active window.
  virtual void Form_Activate() {}
  // When the showing ends. The form is hidden already.
  virtual void Form_Unload() {}
  // The control that has the focus when the form is shown: the first one in tab order that can
  // take it. May be null.
  virtual QWidget* FirstControl() const;

  // A window without a title bar that only the program itself can close, and that does not take the
  // keyboard.
  void MakePanel();
  // Runs events, other than the user's and those of sockets, until the form is painted on the
  // screen, for a short time at most. For forms that are shown right before work that runs no
  // events.
  void WaitUntilSeen();

  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void reject() override;
  void showEvent(QShowEvent* event) override;

 private:
  void PrepareToShow(QWidget* inFrontOf);

  QPointer<QWidget> owner_;
  QObject* inputWhileHidden_;
  QPushButton* defaultButton_ = nullptr;
  QPushButton* cancelButton_ = nullptr;
  bool loaded_ = false;
  bool closable_ = true;
  bool painted_ = false;                // since it was shown
  QEventLoop* untilPainted_ = nullptr;  // runs while somebody waits for the painting
};

}  // namespace quillary
