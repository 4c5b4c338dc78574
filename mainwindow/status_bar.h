#pragma once

#include <QLabel>
#include <QStatusBar>
#include <QString>
#include <array>

namespace quillary {

// Four panels: 1 a hint or message, 2 the position in the list, 3 the list order, 4 the filter.
class StatusBar : public QStatusBar {
  Q_OBJECT

 public:
  explicit StatusBar(const QString& name);

  // `panel` is 1 to 4.
  void SetPanel(int panel, const QString& text);
  QString Panel(int panel) const;

 private:
  QLabel* At(int panel) const { return panels_.at(static_cast<std::size_t>(panel - 1)); }

  std::array<QLabel*, 4> panels_{};
};

}  // namespace quillary
