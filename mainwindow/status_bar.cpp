#include "mainwindow/status_bar.h"

#include <QHelpEvent>
#include <QPainter>
#include <QTextDocument>
#include <QToolTip>
#include <utility>

#include "platform/desktop/accessibility.h"

namespace quillary {

StatusPanel::StatusPanel(QString caption) : caption_(std::move(caption)) {
  SetText({});
}

void StatusPanel::SetText(const QString& text) {
  setText(text);
  SetAccessibleText(*this, caption_, text);
}

QString StatusPanel::Shown() const {
  return fontMetrics().elidedText(text(), Qt::ElideRight, contentsRect().width() - 2 * margin());
}

bool StatusPanel::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return QLabel::event(event);
  // As plain text: a message may name a record or a file.
  const QString tip = Shown() == text() ? QString() : Qt::convertFromPlainText(text());
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tip, this);
  return true;
}

void StatusPanel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  drawFrame(&painter);
  const int m = margin();
  painter.drawText(contentsRect().adjusted(m, 0, -m, 0),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, Shown());
}

StatusBar::StatusBar(const QString& name) {
  setObjectName(name);
  setAccessibleName(QStringLiteral("Status"));
  // It is told where the mouse is, and so are the panels, which pass it on.
  setMouseTracking(true);
  // The longest text of each panel that must always be read whole; the hint takes what is left.
  const std::array<QString, 4> longest{QString(), QStringLiteral("32767/ 32767"),
                                       QStringLiteral("Company"), QStringLiteral("Filter - OFF")};
  const std::array<QString, 4> names{QStringLiteral("Hint"), QStringLiteral("Position"),
                                     QStringLiteral("List order"), QStringLiteral("Filter")};
  for (std::size_t i = 0; i < panels_.size(); ++i) {
    auto* panel = new StatusPanel(names.at(i));
    panel->setObjectName(QStringLiteral("Panel(%1)").arg(i + 1));
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
      constexpr int kReserve = 4;
      panel->setFixedWidth(panel->fontMetrics().horizontalAdvance(longest.at(i)) +
                           2 * (panel->frameWidth() + panel->margin()) + kReserve);
    }
    panel->setMouseTracking(true);
    addWidget(panel, i == 0 ? 1 : 0);
    panels_.at(i) = panel;
  }
}

void StatusBar::SetPanel(int panel, const QString& text) {
  At(panel)->SetText(text);
}

QString StatusBar::Panel(int panel) const {
  return At(panel)->text();
}

int StatusBar::PanelAt(const QMouseEvent& event) const {
  for (int panel = 1; panel <= static_cast<int>(panels_.size()); ++panel) {
    if (At(panel)->geometry().contains(event.pos())) return panel;
  }
  return 0;
}

void StatusBar::mousePressEvent(QMouseEvent* event) {
  if (const int panel = PanelAt(*event)) Q_EMIT MouseDown(panel, event);
}

void StatusBar::mouseMoveEvent(QMouseEvent* event) {
  if (const int panel = PanelAt(*event)) Q_EMIT MouseMove(panel);
}

void StatusBar::mouseDoubleClickEvent(QMouseEvent* event) {
  const int panel = PanelAt(*event);
  if (panel != 0 && event->button() == Qt::LeftButton) Q_EMIT PanelDblClick(panel);
}

}  // namespace quillary
