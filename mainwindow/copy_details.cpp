#include "mainwindow/copy_details.h"

#include <QClipboard>
#include <QGuiApplication>

#include "app/preferences.h"
#include "mainwindow/main_dialog.h"

namespace quillary {

namespace {

std::string Separator(std::uint8_t prefixSprt) {
  switch (prefixSprt) {
    case 0:
      return "\t";
    case 1:
      return " ";
    case 2:
      return ":";
    case 3:
      return ": ";
    default:
      return {};
  }
}

void AddLine(std::string& text, const std::string& line) {
  text += line;
  text += '\r';
}

}  // namespace

void CopyToClipboard(const std::string& text) {
  QClipboard* clipboard = QGuiApplication::clipboard();
  clipboard->clear();
  clipboard->setText(QString::fromStdString(text));
}

// A phone, fax or e-mail line with its prefix, where the user wants these.
std::string MainDialog::LineWithPrefix(std::size_t line) const {
  const std::string& caption = Label.at(line)->Caption();
  if (!shared_.UsePrefix) return caption;
  const std::string& prefix = shared_.*PrefixKeys.at(line - Phone1Line).Text;
  return prefix + Separator(shared_.PrefixSprt) + caption;
}

std::string MainDialog::SelectedDetails() const {
  const auto isChecked = [this](CopyFlag flag) { return ChkCopy.at(flag)->isChecked(); };
  std::string text;
  if (isChecked(CopyName)) AddLine(text, Label[NameLine]->Caption());
  if (isChecked(CopyTitle)) AddLine(text, Label[TitleLine]->Caption());
  if (isChecked(CopyCompany)) AddLine(text, Label[CompanyLine]->Caption());
  if (isChecked(CopyAddress)) {
    for (std::size_t i = AddressLine; i <= LastAddressLine; ++i) {
      if (!Label.at(i)->Caption().empty()) AddLine(text, Label.at(i)->Caption());
    }
  }
  if (isChecked(CopyPhone1)) AddLine(text, LineWithPrefix(Phone1Line));
  if (isChecked(CopyPhone2)) AddLine(text, LineWithPrefix(Phone2Line));
  if (isChecked(CopyFax)) AddLine(text, LineWithPrefix(FaxLine));
  if (isChecked(CopyEMail)) AddLine(text, LineWithPrefix(EMailLine));
  return text;
}

void MainDialog::CopySelected() {
  CopyToClipboard(SelectedDetails());
}

void MainDialog::CopyAll() {
  std::string text;
  for (std::size_t i = 0; i < Label.size(); ++i) {
    const std::string& caption = Label.at(i)->Caption();
    if (caption.empty()) continue;
    const bool mayHavePrefix = i >= Phone1Line && i <= EMailLine;
    AddLine(text, mayHavePrefix ? LineWithPrefix(i) : caption);
  }
  CopyToClipboard(text);
}

}  // namespace quillary
