#include "auxiliary/unread_records.h"

namespace quillary {

void TellUnreadRecords(MsgBoxSnglTxt& box, RunTimeError error, const QString& title) {
  box.ShowMsg(QStringLiteral("Some records could not be read:\r%1.")
                  .arg(QString::fromStdString(RunTimeErrorText(error))),
              MsgButtons::Left, QStringLiteral("OK"), QString(), MsgIcon::Critical, title);
}

}  // namespace quillary
