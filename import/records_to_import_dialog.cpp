#include "import/records_to_import_dialog.h"

#include <QGroupBox>
#include <utility>

#include "auxiliary/one_line.h"
#include "platform/desktop/twips.h"

namespace quillary {
namespace {

// Twips.
constexpr int kWidth = 8355;
constexpr int kHeight = 5775;
constexpr int kMargin = 180;
constexpr int kFieldsTop = 1440;
constexpr std::size_t kFieldsInColumn = 10;

QPushButton* MakeButton(QWidget* parent, const QString& name, const QString& caption, int left,
                        int width) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(name);
  Place(*button, left, 5220, width, 375);
  return button;
}

QString Numbered(const char* name, std::size_t index) {
  return QStringLiteral("%1(%2)").arg(QLatin1String(name)).arg(index);
}

}  // namespace

RecordsToImportDialog::RecordsToImportDialog(const ImportTools& tools, ImportChoice choice)
    : Form(QStringLiteral("RecordsToImportDialog")),
      tools_(tools),
      choice_(std::move(choice)),
      BtnPrev(MakeButton(this, QStringLiteral("BtnPrev"), QStringLiteral("Prev Record   >>"), 330,
                         1815)),
      BtnNext(MakeButton(this, QStringLiteral("BtnNext"), QStringLiteral("<<   Next Record"), 2130,
                         1815)),
      BtnOK(MakeButton(this, QStringLiteral("BtnOK"), QStringLiteral("OK"), 4410, 1065)),
      BtnBack(MakeButton(this, QStringLiteral("BtnBack"), QStringLiteral("Back"), 5700, 1065)),
      BtnCancel(
          MakeButton(this, QStringLiteral("BtnCancel"), QStringLiteral("Cancel"), 6960, 1065)) {
  setWindowTitle(QStringLiteral("Records to Import"));
  SetSize(kWidth, kHeight);
  for (const std::string& text : choice_.Texts) {
    if (!text.empty()) texts_.emplace_back(text);
  }
  MakeInstructions();
  MakeFields();
  QWidget::setTabOrder(CboFieldName.back(), BtnPrev);
  QWidget* last = BtnPrev;
  for (QPushButton* button : {BtnNext, BtnOK, BtnBack, BtnCancel}) {
    QWidget::setTabOrder(last, button);
    last = button;
  }
  connect(BtnPrev, &QPushButton::clicked, this, &RecordsToImportDialog::BtnPrev_Click);
  connect(BtnNext, &QPushButton::clicked, this, &RecordsToImportDialog::BtnNext_Click);
  connect(BtnOK, &QPushButton::clicked, this, &RecordsToImportDialog::BtnOK_Click);
  connect(BtnBack, &QPushButton::clicked, this, &RecordsToImportDialog::BtnBack_Click);
  connect(BtnCancel, &QPushButton::clicked, this, &RecordsToImportDialog::Unload);
  SetDefaultButton(BtnNext);
  SetCancelButton(BtnCancel);
  SetOwner(tools_.Main.MainWindow());
}

void RecordsToImportDialog::MakeInstructions() {
  const std::array<QString, 4> texts{
      QStringLiteral("Select an item from the drop down list to set what each filed in your data "
                     "represents."),
      QStringLiteral("Field left empty, or selected as 'NONE OF THE ABOVE' will not be imported "
                     "into Quillary."),
      QStringLiteral("Make sure not to have two fields with the same data (Except for NONE OF THE "
                     "ABOVE)"),
      QStringLiteral("If your data doesn't look as you expect it to, then try to go Back and "
                     "choose another delimiter.")};
  auto* frame = new QGroupBox(this);
  frame->setObjectName(Numbered("ImportFrame", 0));
  Place(*frame, kMargin, 120, kWidth - 2 * kMargin, 1230);
  for (std::size_t i = 0; i < texts.size(); ++i) {
    auto* label = new PlainLabel(frame, QStringLiteral("Label%1").arg(i + 1), texts.at(i));
    Place(*label, 90, 120 + static_cast<int>(i) * 255, kWidth - 2 * kMargin - 180, 255);
  }
}

void RecordsToImportDialog::MakeFields() {
  constexpr int kFrameWidth = 3945;
  constexpr int kRow = 345;
  constexpr int kListWidth = 2340;
  constexpr int kGap = 60;
  constexpr int kInside = 90;
  constexpr int kDataLeft = kInside + kListWidth + kGap;
  QGroupBox* frame = nullptr;
  for (std::size_t i = 0; i < CboFieldName.size(); ++i) {
    const std::size_t column = i / kFieldsInColumn;
    const auto row = static_cast<int>(i % kFieldsInColumn);
    if (row == 0) {
      frame = new QGroupBox(this);
      frame->setObjectName(Numbered("ImportFrame", column + 1));
      const int left = kMargin + static_cast<int>(column) * (kWidth - 2 * kMargin - kFrameWidth);
      Place(*frame, left, kFieldsTop, kFrameWidth, 3660);
    }
    auto* list = new QComboBox(frame);
    list->setObjectName(Numbered("CboFieldName", i));
    list->setAccessibleName(QStringLiteral("Meaning of field %1").arg(i + 1));
    list->setMaxVisibleItems(static_cast<int>(FieldMeanings.size()));
    Place(*list, kInside, 135 + row * kRow, kListWidth, 300);
    CboFieldName.at(i) = list;
    auto* label = new PlainLabel(frame, Numbered("LblFieldData", i));
    label->setFrameStyle(static_cast<int>(QFrame::StyledPanel) | static_cast<int>(QFrame::Sunken));
    Place(*label, kDataLeft, 135 + row * kRow, kFrameWidth - kDataLeft - kInside, 300);
    LblFieldData.at(i) = label;
  }
}

void RecordsToImportDialog::ShowStep() {
  SetDropList();
  FieldChoice.assign(static_cast<std::size_t>(FieldCount), NoneOfTheAbove);
  MoveToCorner(tools_.Main.MainGeometry());
  ShowForm();
}

void RecordsToImportDialog::Form_Activate() {
  tools_.Main.SetPanel(1, windowTitle());
}

void RecordsToImportDialog::Form_Unload() {
  LinesToImport = {};
  FieldData = {};
  tools_.Main.SetPanel(1, QString());
  // The first step, to which he goes back, has the main window disabled, too.
  if (goesBack_) {
    Q_EMIT Back();
  } else {
    tools_.Main.EnableMain(true);
    Q_EMIT Ended();
  }
}

QWidget* RecordsToImportDialog::FirstControl() const {
  return CboFieldName.front();
}

void RecordsToImportDialog::SetDropList() {
  BtnPrev->setEnabled(false);
  if (PreviewLast < 1) BtnNext->setEnabled(false);
  for (std::size_t i = 0; i < CboFieldName.size(); ++i) {
    QComboBox& list = *CboFieldName.at(i);
    if (i < static_cast<std::size_t>(FieldCount)) {
      for (const char* meaning : FieldMeanings) list.addItem(QLatin1String(meaning));
      list.setCurrentIndex(-1);
    } else {
      list.addItem(QStringLiteral("Not Available"));
      list.setEnabled(false);
    }
  }
  CurRecord = 0;
  ShowFieldData();
}

void RecordsToImportDialog::ShowFieldData() {
  const std::vector<std::string>& fields = FieldData.at(static_cast<std::size_t>(CurRecord));
  for (std::size_t i = 0; i < fields.size(); ++i) {
    PlainLabel& label = *LblFieldData.at(i);
    const int width =
        label.contentsRect().width() - label.fontMetrics().horizontalAdvance(QLatin1Char(' '));
    const QString value = OneLine(fields[i]);
    const QString shown = label.fontMetrics().elidedText(value, Qt::ElideRight, width);
    label.SetPlainText(shown);
    CboFieldName.at(i)->setAccessibleDescription(
        QStringLiteral("Field %1: %2").arg(i + 1).arg(value));
    const QString hint = QStringLiteral("<p>%1</p>").arg(value.toHtmlEscaped());
    label.setToolTip(shown == value ? QString() : hint);
  }
}

void RecordsToImportDialog::BtnNext_Click() {
  ++CurRecord;
  BtnPrev->setEnabled(true);
  ShowFieldData();
  if (CurRecord == PreviewLast) {
    BtnPrev->setFocus();
    BtnNext->setEnabled(false);
  }
}

void RecordsToImportDialog::BtnPrev_Click() {
  --CurRecord;
  BtnNext->setEnabled(true);
  ShowFieldData();
  if (CurRecord == 0) {
    BtnNext->setFocus();
    BtnPrev->setEnabled(false);
  }
}

void RecordsToImportDialog::BtnBack_Click() {
  goesBack_ = true;
  Unload();
}

bool RecordsToImportDialog::Ask(const QString& title, const QString& text, const QString& yes,
                                const QString& no, MsgIcon icon) {
  tools_.MsgBox.ShowMsg(text, MsgButtons::BothLeftDefault, yes, no, icon, title);
  return tools_.Shared.MsgBoxAnswer != 0;
}

void RecordsToImportDialog::Tell(const QString& title, const QString& text, MsgIcon icon) {
  tools_.MsgBox.ShowMsg(text, MsgButtons::Left, QStringLiteral("OK"), QString(), icon, title);
}

}  // namespace quillary
