#pragma once

#include <QComboBox>
#include <QPushButton>
#include <QString>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/hub.h"
#include "app/shared_data.h"
#include "auxiliary/msg_box.h"
#include "platform/desktop/form.h"
#include "platform/desktop/volumes.h"
#include "store/profile.h"

namespace quillary {

// Where a diskette would be put into the drive: the user says which folder is meant. Offers the
// removable media and the folder that proved good last, which is kept in the preferences
// ("BackUpFolder"); any other can be typed or looked for. The folder of the data files is refused
// for a backup; for a restore it is offered where copies stand beside the data.
class BackUpFolder : public Form {
  Q_OBJECT

 public:
  BackUpFolder(SharedData& shared, Profile& profile, Hub& hub, MsgBoxSnglTxt& msgBoxSnglTxt,
               std::function<std::vector<Volume>()> mountedVolumes = MountedVolumes);

  enum class Use : std::uint8_t { BackUp, Restore };

  // Centred over the main window; returns when it is closed: the folder, which need not exist, as a
  // program path that ends in a backslash, or nothing if the user gave up.
  std::optional<std::string> Choose(const QString& title, Use use);
  // The same question once more, with what was answered to it before.
  std::optional<std::string> ChooseAgain();
  // To be called when the folder that was chosen last proved good.
  void Remember();

 private:
  void LayOut();
  void Offer(const QString& folder);
  void Form_Load();
  void BtnBrowse_Click();
  void BtnOK_Click();

  SharedData& shared_;
  Profile& profile_;
  Hub& hub_;
  MsgBoxSnglTxt& msgBoxSnglTxt_;
  std::function<std::vector<Volume>()> mountedVolumes_;
  std::optional<std::string> chosen_;
  Use use_ = Use::BackUp;
  QString tried_;  // what chosen_ was last, a path of the host

  QComboBox* CboFolder;
  QPushButton* BtnBrowse;
  QPushButton* BtnOK;
  QPushButton* BtnCancel;
};

}  // namespace quillary
