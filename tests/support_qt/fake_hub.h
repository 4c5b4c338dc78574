#pragma once

#include <QRect>
#include <QString>
#include <QWidget>
#include <array>
#include <functional>
#include <string>
#include <vector>

#include "app/hub.h"

namespace quillary::test {

// A main window that does nothing but remember what a dialog asked of it.
class FakeHub : public Hub {
 public:
  explicit FakeHub(QRect geometry = QRect(100, 100, 600, 400)) : Geometry(geometry) {
    Window.setObjectName(QStringLiteral("MainDialog"));
    Window.setGeometry(geometry);
  }

  void SetData() override {
    Calls.push_back("SetData");
    if (OnSetData) OnSetData();
  }
  void SetPanel(int panel, const QString& text) override {
    Panels.at(static_cast<std::size_t>(panel)) = text;
    PanelTexts.push_back(text);
  }
  QString Panel(int panel) const override { return Panels.at(static_cast<std::size_t>(panel)); }
  void EnableMain(bool enable) override {
    Calls.push_back(enable ? "EnableMain" : "DisableMain");
    Window.setEnabled(enable);
  }
  void BringToFront() override { Calls.push_back("BringToFront"); }
  QRect MainGeometry() const override { return Geometry; }
  QWidget& MainWindow() override { return Window; }
  int ListCount() const override { return static_cast<int>(ItemDatas.size()); }
  int ItemData(int index) const override { return ItemDatas.at(static_cast<std::size_t>(index)); }
  int NewIndex() const override { return NewIndexValue; }
  void ShowReadOnly() override { Calls.push_back("ShowReadOnly"); }

  bool IsEnabled() const { return Window.isEnabled(); }
  // How often a call of that name was made.
  int Count(const std::string& name) const {
    int count = 0;
    for (const std::string& call : Calls) count += call == name ? 1 : 0;
    return count;
  }

  // "SetData", "EnableMain", "DisableMain", "BringToFront", "ShowReadOnly", in their order.
  std::vector<std::string> Calls;
  std::array<QString, 5> Panels;    // by number; 0 is not used
  std::vector<QString> PanelTexts;  // every text given to any panel, in order
  std::function<void()> OnSetData;
  std::vector<int> ItemDatas;  // the list box's lines, their record numbers
  int NewIndexValue = -1;
  QRect Geometry;
  QWidget Window;
};

}  // namespace quillary::test
