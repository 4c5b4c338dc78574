#pragma once

#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QString>
#include <array>
#include <cstdint>

#include "app/hub.h"
#include "app/shared_data.h"
#include "auxiliary/message_text.h"
#include "platform/desktop/form.h"

namespace quillary {

// Which buttons a message box has.
enum class MsgButtons : std::int16_t {
  Left = 0,
  Right = 1,
  BothLeftDefault = 2,
  BothRightDefault = 3
};
enum class MsgIcon : std::int16_t {
  None = 0,
  Critical = 1,
  Question = 2,
  Exclamation = 3,
  Information = 4
};

// What the two message boxes have in common. Centred over the main window; the answer is left in
// MsgBoxAnswer: -1 for the left button, 0 for the right one, Esc and the title bar. While a box is
// open, another call to it is answered with 0 and shows nothing.
class MsgBox : public Form {
  Q_OBJECT

 protected:
  // `frameHeight`: the frame around icon and texts, in twips; the buttons stand below it.
  MsgBox(const QString& name, SharedData& shared, Hub& hub, int frameHeight);

  // A text inside the frame, `top` and `height` in twips.
  MessageText* AddText(const QString& name, int top, int height);
  // Everything but the texts, then waits for the answer. False at once while the box is open.
  bool Arrange(MsgButtons buttons, const QString& okCaption, const QString& cancelCaption,
               MsgIcon icon, const QString& title);
  void Ask();

  void Form_Activate() override;
  void Form_Unload() override;
  QWidget* FirstControl() const override;
  void reject() override;

 private:
  void BtnOK_Click();
  void BtnCancel_Click();
  void ArrangeButtons(MsgButtons buttons);

  SharedData& shared_;
  Hub& hub_;
  QFrame* Frame;
  QPushButton* BtnOK;
  QPushButton* BtnCancel;
  std::array<QLabel*, 4> icons_;  // Critical, Question, Exclamation, Information
};

// A message box with one text.
class MsgBoxSnglTxt : public MsgBox {
  Q_OBJECT

 public:
  MsgBoxSnglTxt(SharedData& shared, Hub& hub);
  // Returns when the user has answered. Lines in `text` are separated by a carriage return; it is
  // shown as plain text, and where it is too long without its middle.
  void ShowMsg(const QString& text, MsgButtons buttons, const QString& okCaption,
               const QString& cancelCaption, MsgIcon icon, const QString& title);

 private:
  MessageText* Text1;
};

// A message box with two texts, one above the other.
class MsgBoxDblTxt : public MsgBox {
  Q_OBJECT

 public:
  MsgBoxDblTxt(SharedData& shared, Hub& hub);
  void ShowMsg(const QString& text1, const QString& text2, MsgButtons buttons,
               const QString& okCaption, const QString& cancelCaption, MsgIcon icon,
               const QString& title);

 private:
  MessageText* Text1;
  MessageText* Text2;
};

}  // namespace quillary
