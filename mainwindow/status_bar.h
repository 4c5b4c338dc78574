#pragma once

#include <QLabel>
#include <QMouseEvent>
#include <QStatusBar>
#include <QString>
#include <array>

namespace quillary {

// A panel of the status bar. A text that does not fit ends in "…"; the tool tip tells it whole.
class StatusPanel : public QLabel {
  Q_OBJECT

 public:
  // `caption` says what it shows to those who cannot see where it stands.
  explicit StatusPanel(QString caption);

  void SetText(const QString& text);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  // What is painted of the text.
  QString Shown() const;

  QString caption_;
};

// Four panels: 1 a hint or message, 2 the position in the list, 3 the list order, 4 the filter.
class StatusBar : public QStatusBar {
  Q_OBJECT

 public:
  explicit StatusBar(const QString& name);

  // `panel` is 1 to 4.
  void SetPanel(int panel, const QString& text);
  QString Panel(int panel) const;

 Q_SIGNALS:
  // With the number of the panel under the mouse. Between two panels there is none.
  void MouseDown(int panel, QMouseEvent* event);
  void MouseMove(int panel);
  void PanelDblClick(int panel);

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  // 0 for none.
  int PanelAt(const QMouseEvent& event) const;
  StatusPanel* At(int panel) const { return panels_.at(static_cast<std::size_t>(panel - 1)); }

  std::array<StatusPanel*, 4> panels_{};
};

}  // namespace quillary
