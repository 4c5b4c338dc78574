#include "mainwindow/status_bar.h"

#include <algorithm>

namespace quillary {

StatusBar::StatusBar(const QString& name) {
  setObjectName(name);
  // The longest text of each panel that must always be read whole; the hint takes what is left.
  const std::array<QString, 4> longest{QString(), QStringLiteral(" 32767/ 32767"),
                                       QStringLiteral("Company"), QStringLiteral("Filter - OFF")};
  const std::array<QString, 4> names{QStringLiteral("Hint"), QStringLiteral("Position"),
                                     QStringLiteral("List order"), QStringLiteral("Filter")};
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    auto* panel = new QLabel;
    panel->setObjectName(QStringLiteral("Panel(%1)").arg(i + 1));
    panel->setAccessibleName(names.at(i));
    panel->setTextFormat(Qt::PlainText);
    panel->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    panel->setMargin(2);
    // What is being done is to be read while the window is disabled, too.
    QPalette colors = panel->palette();
    colors.setColor(QPalette::Disabled, QPalette::WindowText,
                    colors.color(QPalette::Active, QPalette::WindowText));
    panel->setPalette(colors);
    if (i == 0) {
      // A long hint must not make the window wider.
      panel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    } else {
      panel->setMinimumWidth(panel->fontMetrics().horizontalAdvance(longest.at(i)) + 14);
    }
    addWidget(panel, i == 0 ? 1 : 0);
    panels_.at(i) = panel;
  }
}

void StatusBar::SetPanel(int panel, const QString& text) {
  At(panel)->setText(text);
}

QString StatusBar::Panel(int panel) const {
  return At(panel)->text();
}

}  // namespace quillary
