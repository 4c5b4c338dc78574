#pragma once

#include <QRect>
#include <QString>
#include <QWidget>
#include <array>

#include "app/hub.h"

namespace quillary::test {

// A main window that does nothing but show its panels and be enabled or not.
class FakeHub : public Hub {
 public:
  FakeHub() {
    Window.setObjectName(QStringLiteral("MainDialog"));
    Window.setGeometry(Geometry);
  }

  void SetData() override {}
  void SetPanel(int panel, const QString& text) override {
    Panels.at(static_cast<std::size_t>(panel)) = text;
  }
  QString Panel(int panel) const override { return Panels.at(static_cast<std::size_t>(panel)); }
  void EnableMain(bool enable) override { Window.setEnabled(enable); }
  void BringToFront() override {}
  QRect MainGeometry() const override { return Geometry; }
  QWidget& MainWindow() override { return Window; }
  int ListCount() const override { return 0; }
  int ItemData(int) const override { return -1; }
  int NewIndex() const override { return -1; }
  void ShowReadOnly() override {}
  void NoteToldFault(RunTimeError /*error*/) override {}

  bool IsEnabled() const { return Window.isEnabled(); }

  std::array<QString, 5> Panels;  // by number; 0 is not used
  QRect Geometry{100, 100, 600, 400};
  QWidget Window;
};

}  // namespace quillary::test
