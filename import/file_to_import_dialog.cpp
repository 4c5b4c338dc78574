#include "import/file_to_import_dialog.h"

#include <QApplication>
#include <QDir>
#include <QLabel>
#include <QMessageBox>
#include <algorithm>
#include <utility>

#include "platform/desktop/accessibility.h"
#include "platform/desktop/twips.h"
#include "platform/numbers.h"

namespace quillary {
namespace {

enum DelimiterKind : std::size_t { Comma, CommaAndQuotes, Tab, Other };

QRadioButton* MakeOption(QWidget* frame, const QString& name, int index, const QString& caption) {
  auto* option = new QRadioButton(caption, frame);
  option->setObjectName(QStringLiteral("%1(%2)").arg(name).arg(index));
  return option;
}

QLineEdit* MakeBox(QWidget* frame, const QString& name, const QString& accessibleName) {
  auto* box = new QLineEdit(frame);
  box->setObjectName(name);
  box->setAccessibleName(accessibleName);
  return box;
}

QPushButton* MakeButton(QWidget* parent, const QString& name, const QString& caption, int left) {
  auto* button = new QPushButton(caption, parent);
  button->setObjectName(name);
  Place(*button, left, 5820, 1215, 375);
  return button;
}

QGroupBox* MakeFrame(QWidget* parent, const QString& name, const QString& caption, int top,
                     int height) {
  auto* frame = new QGroupBox(caption, parent);
  frame->setObjectName(name);
  Place(*frame, 180, top, 4275, height);
  return frame;
}

}  // namespace

FileToImportDialog::FileToImportDialog(const ImportTools& tools, DriveList::FindVolumes findVolumes)
    : Form(QStringLiteral("FileToImportDialog")),
      tools_(tools),
      Append_Replace(new QCheckBox(this)),
      Frame1(
          MakeFrame(this, QStringLiteral("Frame1"), QStringLiteral(" File to Import "), 120, 2940)),
      SlctDrive(new DriveList(Frame1, std::move(findVolumes))),
      SlctDir(new DirList(Frame1)),
      SlctFile(new FileList(Frame1)),
      Frame2(MakeFrame(this, QStringLiteral("Frame2"), QStringLiteral(" Records Delimiter "), 3150,
                       1005)),
      Frame3(MakeFrame(this, QStringLiteral("Frame3"), QStringLiteral(" Records to Import "), 4245,
                       1425)),
      BtnOK(MakeButton(this, QStringLiteral("BtnOK"), QStringLiteral("OK"), 960)),
      BtnCancel(MakeButton(this, QStringLiteral("BtnCancel"), QStringLiteral("Cancel"), 2460)) {
  setWindowTitle(QStringLiteral("File to Import"));
  SetSize(4635, 6375);
  Append_Replace->setObjectName(QStringLiteral("Append_Replace"));
  Append_Replace->hide();
  MakeFileFrame();
  MakeDelimiterFrame();
  MakeRecordsFrame();
  SetTabOrder();
  connect(BtnOK, &QPushButton::clicked, this, &FileToImportDialog::BtnOK_Click);
  connect(BtnCancel, &QPushButton::clicked, this, &FileToImportDialog::Unload);
  SetDefaultButton(BtnOK);
  SetCancelButton(BtnCancel);
  SetOwner(tools_.Main.MainWindow());
}

void FileToImportDialog::MakeFileFrame() {
  TxtFileToImport =
      MakeBox(Frame1, QStringLiteral("TxtFileToImport"), QStringLiteral("File to import"));
  Place(*TxtFileToImport, 180, 300, 1935, 285);
  Place(*SlctFile, 180, 660, 1935, 2115);
  Place(*SlctDrive, 2220, 300, 1935, 285);
  Place(*SlctDir, 2220, 660, 1935, 2115);
  connect(SlctDrive, &DriveList::Change, this, &FileToImportDialog::SlctDrive_Change);
  connect(SlctDir, &DirList::Change, this, [this] {
    SlctFile->SetPath(SlctDir->Path());
    SlctDrive->ShowDriveOf(SlctDir->Path());
  });
  connect(SlctFile, &FileList::Click, this,
          [this] { TxtFileToImport->setText(SlctFile->FileName()); });
  connect(SlctFile, &FileList::PatternChange, this,
          [this] { TxtFileToImport->setText(SlctFile->Pattern()); });
  connect(SlctFile, &FileList::DblClick, this, &FileToImportDialog::SlctFile_DblClick);
}

void FileToImportDialog::MakeDelimiterFrame() {
  const std::array<QString, 4> captions{QStringLiteral("Comma"),
                                        QStringLiteral("Comma, and Quotes"), QStringLiteral("Tab"),
                                        QStringLiteral("Other")};
  for (std::size_t i = 0; i < captions.size(); ++i) {
    OptRcrdDelimiter.at(i) =
        MakeOption(Frame2, QStringLiteral("OptRcrdDelimiter"), static_cast<int>(i), captions.at(i));
  }
  Place(*OptRcrdDelimiter[Comma], 180, 300, 2100, 285);
  Place(*OptRcrdDelimiter[CommaAndQuotes], 180, 600, 2100, 285);
  Place(*OptRcrdDelimiter[Tab], 2340, 270, 780, 285);
  Place(*OptRcrdDelimiter[Other], 2340, 570, 780, 285);
  TxtOtherDelimiter =
      MakeBox(Frame2, QStringLiteral("TxtOtherDelimiter"), QStringLiteral("Other delimiter"));
  Place(*TxtOtherDelimiter, 3120, 570, 1035, 285);
  TxtOtherDelimiter->installEventFilter(this);
}

void FileToImportDialog::MakeRecordsFrame() {
  const QString name = QStringLiteral("OptRcrdToImport");
  OptRcrdToImport[0] =
      MakeOption(Frame3, name, 0, QStringLiteral("Import all records in data file"));
  OptRcrdToImport[1] =
      MakeOption(Frame3, name, 1, QStringLiteral("Import only records with the following text:"));
  Place(*OptRcrdToImport[0], 180, 270, 3975, 285);
  Place(*OptRcrdToImport[1], 180, 585, 3975, 285);
  TxtRecordsToImport[0] = MakeBox(Frame3, QStringLiteral("TxtRecordsToImport(0)"),
                                  QStringLiteral("Text of the records to import"));
  TxtRecordsToImport[1] = MakeBox(Frame3, QStringLiteral("TxtRecordsToImport(1)"),
                                  QStringLiteral("Or text of the records to import"));
  Place(*TxtRecordsToImport[0], 180, 960, 1785, 285);
  Place(*TxtRecordsToImport[1], 2370, 960, 1785, 285);
  for (QLineEdit* box : TxtRecordsToImport) box->installEventFilter(this);
  auto* Label1 = new PlainLabel(Frame3, QStringLiteral("Label1"), QStringLiteral("Or"));
  Label1->setAlignment(Qt::AlignCenter);
  Place(*Label1, 1965, 960, 405, 285);
}

// The boxes select their options when they get the focus. So that nobody who goes on by Tab changes
// his choice, they are tab stops only while it is theirs.
void FileToImportDialog::SetTabOrder() {
  const auto follow = [](QRadioButton* option, QLineEdit* box) {
    const auto apply = [box](bool isChosen) {
      box->setFocusPolicy(isChosen ? Qt::StrongFocus : Qt::ClickFocus);
    };
    connect(option, &QRadioButton::toggled, box, apply);
    apply(false);
  };
  follow(OptRcrdDelimiter[Other], TxtOtherDelimiter);
  for (QLineEdit* box : TxtRecordsToImport) follow(OptRcrdToImport[1], box);

  std::vector<QWidget*> order{TxtFileToImport, SlctFile, SlctDrive, SlctDir};
  order.insert(order.end(), OptRcrdDelimiter.begin(), OptRcrdDelimiter.end());
  order.push_back(TxtOtherDelimiter);
  order.insert(order.end(), OptRcrdToImport.begin(), OptRcrdToImport.end());
  order.insert(order.end(), TxtRecordsToImport.begin(), TxtRecordsToImport.end());
  order.push_back(BtnOK);
  order.push_back(BtnCancel);
  for (std::size_t i = 1; i < order.size(); ++i) QWidget::setTabOrder(order[i - 1], order[i]);
}

void FileToImportDialog::MnuImport_Click(int index) {
  Append_Replace->setChecked(index != 0);
  Form_Load();
  MoveToCorner(tools_.Main.MainGeometry());
  ShowForm();
  tools_.Main.EnableMain(false);
}

void FileToImportDialog::Form_Load() {
  OptRcrdDelimiter[Comma]->setChecked(true);
  OptRcrdToImport[0]->setChecked(true);
  TxtOtherDelimiter->clear();
  for (QLineEdit* box : TxtRecordsToImport) box->clear();
  // Where the list is of the same folder as before it keeps what was selected.
  SlctFile->setCurrentItem(nullptr);
  SlctFile->SetPattern(QStringLiteral("*.*"));
  TxtFileToImport->setText(SlctFile->Pattern());
  TxtFileToImport->selectAll();
  SlctDrive->Refresh();
  if (!SlctDir->SetPath(QDir::homePath())) SlctDir->SetPath(QDir::rootPath());
  tools_.Main.SetPanel(1, windowTitle());
}

// Files may have been added meanwhile.
void FileToImportDialog::Form_Activate() {
  tools_.Main.SetPanel(1, windowTitle());
  SlctFile->Refresh();
}

void FileToImportDialog::Form_Unload() {
  tools_.Main.SetPanel(1, QString());
  tools_.Main.EnableMain(true);
}

bool FileToImportDialog::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::FocusIn) {
    if (object == TxtOtherDelimiter) {
      OptRcrdDelimiter[Other]->setChecked(true);
    } else {
      OptRcrdToImport[1]->setChecked(true);
    }
  }
  return Form::eventFilter(object, event);
}

void FileToImportDialog::SlctDrive_Change() {
  if (SlctDir->SetPath(SlctDrive->Drive())) return;
  Tell(QStringLiteral("Unavailable drive"),
       QStringLiteral("The selected drive is unavailable.\rPlease try again"));
  SlctDrive->ShowDriveOf(SlctDir->Path());
}

void FileToImportDialog::SlctFile_DblClick() {
  TxtFileToImport->setText(SlctFile->FileName());
  SlctDir->SetPath(SlctFile->Path());
  BtnOK->click();
}

void FileToImportDialog::ChangeFileName() {
  if (!SlctFile->SetFileName(TxtFileToImport->text())) {
    QApplication::beep();
    TxtFileToImport->setFocus();
  }
  // What is typed next takes the text's place.
  TxtFileToImport->selectAll();
  SlctDir->SetPath(SlctFile->Path());
  // Qt has told that the folder has it.
  TellFocus(*TxtFileToImport);
}

void FileToImportDialog::BtnOK_Click() {
  if (OptRcrdDelimiter[Other]->isChecked() && TxtOtherDelimiter->text().isEmpty()) {
    Tell(QStringLiteral("Missing Delimiter"),
         QStringLiteral("You didn't specify the delimiter.\rPlease try again."));
    return;
  }
  if (!SlctFile->Lists(TxtFileToImport->text())) {
    ChangeFileName();
    return;
  }
  const RunTimeError error = OpenSecondStep();
  if (error != RunTimeError::None) Report(error);
}

ImportChoice FileToImportDialog::Choice() const {
  ImportChoice choice;
  choice.Replace = Append_Replace->isChecked();
  choice.ImportFile = QDir(SlctDir->Path()).filePath(TxtFileToImport->text());
  const std::array<std::string, 4> delimiters{",", "\",\"", "\t",
                                              TxtOtherDelimiter->text().toStdString()};
  const auto* const chosen =
      std::find_if(OptRcrdDelimiter.begin(), OptRcrdDelimiter.end(),
                   [](const QRadioButton* option) { return option->isChecked(); });
  const auto DelimKind = static_cast<std::size_t>(chosen - OptRcrdDelimiter.begin());
  choice.Format = {delimiters.at(DelimKind), DelimKind == CommaAndQuotes};
  choice.AllLines = OptRcrdToImport[0]->isChecked();
  for (std::size_t i = 0; i < choice.Texts.size(); ++i) {
    choice.Texts.at(i) = TxtRecordsToImport.at(i)->text().toStdString();
  }
  return choice;
}

// Where the second step cannot be opened, this one goes on.
RunTimeError FileToImportDialog::OpenSecondStep() {
  secondStep_ = std::make_unique<RecordsToImportDialog>(tools_, Choice());
  RunTimeError error = secondStep_->CheckDelimiter();
  if (error != RunTimeError::None || tools_.Shared.MsgBoxAnswer != 1) return error;

  place_ = pos();
  // Hidden first: while a dialog is shown, the main window lets it come before itself.
  HideForm();
  tools_.Main.BringToFront();
  tools_.Waiting.ShowPleaseWait();
  error = secondStep_->ImportLines();
  tools_.Waiting.HideForm();
  tools_.Main.SetPanel(1, QString());
  if (error != RunTimeError::None || tools_.Shared.MsgBoxAnswer == 0) {
    secondStep_.reset();
    ShowAgain();
    return error;
  }
  connect(secondStep_.get(), &RecordsToImportDialog::Back, this, &FileToImportDialog::ShowAgain);
  connect(secondStep_.get(), &RecordsToImportDialog::Ended, this, &FileToImportDialog::Unload);
  tools_.Main.BringToFront();
  secondStep_->ShowStep();
  return error;
}

void FileToImportDialog::ShowAgain() {
  MoveTo(place_);
  ShowForm();
}

void FileToImportDialog::Report(RunTimeError error) {
  const QString number = QString::fromStdString(SignedNumberText(static_cast<int>(error)));
  QMessageBox box(QMessageBox::NoIcon, QStringLiteral("Quillary"),
                  QStringLiteral("Error No. %1 Found, in the FileToImportDialog.BtnOK_Click\n"
                                 "Please contact the authour.")
                      .arg(number),
                  QMessageBox::Ok, this);
  box.setTextFormat(Qt::PlainText);
  box.exec();
}

void FileToImportDialog::Tell(const QString& title, const QString& text) {
  tools_.MsgBox.ShowMsg(text, MsgButtons::Left, QStringLiteral("OK"), QString(),
                        MsgIcon::Exclamation, title);
}

}  // namespace quillary
