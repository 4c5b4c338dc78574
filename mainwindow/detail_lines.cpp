#include "mainwindow/copy_details.h"
#include "mainwindow/main_dialog.h"

namespace quillary {

namespace {

bool IsAddress(int index) {
  return index >= AddressLine && index <= LastAddressLine;
}

bool IsNumber(int index) {
  return index >= Phone1Line && index <= FaxLine;
}

QString Hint(int index) {
  switch (index) {
    case NameLine:
      return QStringLiteral(
          "Click to change the style of this name. Shift+Click to copy to the Clipbaord.");
    case TitleLine:
      return QStringLiteral("Click to copy the Title to the Clipboard.");
    case CompanyLine:
      return QStringLiteral("Click to copy the Company to the Clipboard.");
    case EMailLine:
      return QStringLiteral("Click to copy the E-Mail address to the Clipboard.");
    case NotesLine:
      return QStringLiteral("Click to copy the Notes to the Clipboard.");
    default:
      return IsAddress(index)
                 ? QStringLiteral("Click to copy the Address to the Clipboard.")
                 : QStringLiteral(
                       "Click to dial to this number. Shift+Click to copy to the Clipboard.");
  }
}

}  // namespace

void MainDialog::Label_MouseDown(int index, const QMouseEvent& event) {
  const std::string& caption = Label.at(static_cast<std::size_t>(index))->Caption();
  if (IsAddress(index)) {
    std::string address = Label[AddressLine]->Caption();
    for (std::size_t i = AddressLine + 1; i <= LastAddressLine; ++i) {
      address += "\r" + Label.at(i)->Caption();
    }
    CopyToClipboard(address);
    return;
  }
  if (index != NameLine && !IsNumber(index)) {
    CopyToClipboard(caption);
    return;
  }
  if (event.button() != Qt::LeftButton) return;
  if (ShiftAlone(event)) {
    CopyToClipboard(caption);
  } else if (!event.modifiers().testFlag(Qt::ShiftModifier)) {
    if (index == NameLine) {
      quillMnu_.SetNameStyles(shared_.FieldValues);
      quillMnu_.MnuNameStyle.popup(event.globalPosition().toPoint());
    } else {
      commands_->Dial(caption);
    }
  }
}

void MainDialog::Highlight(int index) {
  for (int i = 0; i < static_cast<int>(Label.size()); ++i) {
    const bool isOver = i == index || (IsAddress(i) && IsAddress(index));
    Label.at(static_cast<std::size_t>(i))
        ->SetTextColour(isOver ? DetailLabel::Colour::Highlighted : DetailLabel::Colour::Normal);
  }
}

void MainDialog::EndHighlight() {
  for (DetailLabel* label : Label) {
    if (label->TextColour() == DetailLabel::Colour::Highlighted) {
      label->SetTextColour(DetailLabel::Colour::Normal);
    }
  }
}

void MainDialog::Label_MouseMove(int index) {
  Highlight(index);
  if (!IsNumber(index) || !IsDialling()) SetPanel(1, Hint(index));
}

// What dialling says stays until it is over.
bool MainDialog::IsDialling() const {
  return Panel(1) == QStringLiteral("Dial a number.");
}

void MainDialog::GoToLine(int index, int step) {
  for (int i = index; i >= NameLine && i <= NotesLine; i += step) {
    if (!Label.at(static_cast<std::size_t>(i))->isEnabled()) continue;
    Label.at(static_cast<std::size_t>(keyLine_))->SetHasKeyboard(false);
    keyLine_ = i;
    Label.at(static_cast<std::size_t>(i))->SetHasKeyboard(true);
    Label_MouseMove(i);
    return;
  }
}

bool MainDialog::DetailsPanel_KeyDown(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Up || event.key() == Qt::Key_Down) {
    const int step = event.key() == Qt::Key_Down ? 1 : -1;
    GoToLine(keyLine_ + step, step);
    return true;
  }
  const bool isClick =
      event.key() == Qt::Key_Space || event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  const DetailLabel* label = Label.at(static_cast<std::size_t>(keyLine_));
  if (!isClick || event.isAutoRepeat() || !label->isEnabled()) return false;
  const QPoint place = label->rect().bottomLeft();
  const QMouseEvent click(QEvent::MouseButtonPress, place, label->mapToGlobal(place),
                          Qt::LeftButton, Qt::LeftButton, event.modifiers());
  Label_MouseDown(keyLine_, click);
  return true;
}

void MainDialog::MnuNameStyleArray_Click(int index) {
  const auto name = OfferedName(index, shared_.FieldValues);
  if (name.has_value()) Label[NameLine]->SetCaption(*name);
}

}  // namespace quillary
