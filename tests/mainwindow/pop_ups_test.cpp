#include <QStyleHints>

#include "tests/support_qt/main_fixture.h"

namespace quillary::test {
namespace {

class PopUpsTest : public MainFixture {
 protected:
  PopUpsTest() {
    Guard.InUseTimer.start();
    Add({{LastName, "Aster"}, {Company, "Zeta"}});
    Add({{LastName, "Bull"}});
    Add({{LastName, "Cole"}, {Company, "Acme"}});
  }
  // The menu that comes up, which is closed again.
  QWidget* Opened(const std::function<void()>& open) {
    open();
    QWidget* menu = QApplication::activePopupWidget();
    if (menu != nullptr) menu->close();
    return menu;
  }
  QWidget& Of(const char* name) {
    return name == std::string("LstNames") ? *Control<ListBox>(Main, name).viewport()
                                           : Control<QWidget>(Main, name);
  }
  QWidget* OpenedByMouse(const char* name) {
    return Opened([&] { QTest::mouseClick(&Of(name), Qt::RightButton); });
  }
  QWidget* OpenedByKey(const char* name) {
    return Opened([&] {
      Control<QWidget>(Main, name).setFocus();
      PressKey(Main, Qt::Key_F10, Qt::ShiftModifier);
    });
  }
  QWidget& Panel_(int panel) {
    return Control<QWidget>(Main, ("Panel(" + std::to_string(panel) + ")").c_str());
  }
  bool CanRestore() { return Main.Menus().MnuExchangeArray[3]->isEnabled(); }
};

TEST_F(PopUpsTest, EachControlHasItsMenu) {
  Show();
  QuillMnu& menus = Main.Menus();
  const std::vector<std::pair<const char*, QWidget*>> expected{{"BtnCopy", menus.MnuCopy},
                                                               {"BtnNew", menus.MnuNew},
                                                               {"BtnDelete", menus.MnuDelete},
                                                               {"BtnFilter", menus.MnuFilter},
                                                               {"BtnExchange", menus.MnuExchange},
                                                               {"LstNames", &menus.MnuLstNames},
                                                               {"BtnEdit", nullptr}};
  Select(1);
  for (const auto& [control, menu] : expected) {
    EXPECT_EQ(OpenedByMouse(control), menu) << control;
    EXPECT_EQ(OpenedByKey(control), menu) << control;
  }
  EXPECT_EQ(Label(0).Caption(), "Bull");  // the mouse was on another line
  EXPECT_TRUE(Started.Started.empty());
  Shared.InUse = true;
  Main.SetData();
  for (const char* control : {"BtnNew", "BtnDelete"}) {
    EXPECT_EQ(OpenedByMouse(control), nullptr) << control;
  }
}

TEST_F(PopUpsTest, ItemsAndButtonsStartTheirCommands) {
  Show();
  QuillMnu& menus = Main.Menus();
  const std::vector<std::pair<QAction*, const char*>> items{
      {menus.MnuNewArray[1], "ShowDuplicateDialog"},
      {menus.MnuEdit, "ShowEditDialog"},
      {menus.MnuDeleteArray[0], "ShowDeleteDialog"},
      {menus.MnuDeleteArray[1], "DeleteWithoutConfirmation"},
      {menus.MnuFilterArray[0], "ShowFilterDialog"},
      {menus.MnuFilterArray[1], "FilterOff"},
      {menus.MnuTipOfDay, "ShowTipOfDay"},
      {menus.MnuAbout, "ShowAboutDialog"},
      {menus.MnuDial, "OpenDialer"}};
  for (const auto& [item, command] : items) {
    Started.Started.clear();
    item->trigger();
    EXPECT_EQ(Started.Started, Texts{command});
  }
  EXPECT_FALSE(menus.MnuFilterArray[0]->isChecked());  // not in force yet
  const std::vector<std::tuple<const char*, Qt::KeyboardModifiers, const char*>> buttons{
      {"BtnNew", Qt::NoModifier, "ShowNewDialog"},
      {"BtnNew", Qt::ShiftModifier, "ShowDuplicateDialog"},
      {"BtnNew", Qt::ShiftModifier | Qt::ControlModifier, "ShowNewDialog"},
      {"BtnEdit", Qt::NoModifier, "ShowEditDialog"},
      {"BtnDelete", Qt::NoModifier, "ShowDeleteDialog"},
      {"BtnDelete", Qt::ShiftModifier, "DeleteWithoutConfirmation"},
      {"BtnDelete", Qt::ShiftModifier | Qt::AltModifier, "ShowDeleteDialog"},
      {"BtnFilter", Qt::NoModifier, "ShowFilterDialog"},
      {"BtnDial", Qt::NoModifier, "OpenDialer"},
      {"BtnAbout", Qt::NoModifier, "ShowAboutDialog"},
      {"CopyrightLabel", Qt::NoModifier, "ShowAboutDialog"}};
  for (const auto& [button, held, command] : buttons) {
    Started.Started.clear();
    Click(Main, button, held);
    EXPECT_EQ(Started.Started, Texts{command}) << button;
  }
  Started.Started.clear();
  Click(Main, "BtnAbout");
  EXPECT_TRUE(menus.MnuReports->isEnabled());
  menus.MnuReports->trigger();  // can be chosen and does nothing
  EXPECT_EQ(Started.Started.size(), 1U);
}

// However often it is pressed, one record is deleted; a press that comes later is meant.
TEST_F(PopUpsTest, HurriedPressesOfDeleteDeleteOnce) {
  Show();
  auto& button = Control<QWidget>(Main, "BtnDelete");
  const auto interval =
      static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
  quint64 at = 1'000'000;
  const auto press = [&](QEvent::Type type, quint64 after) {
    at += after;
    for (const auto step : {type, QEvent::MouseButtonRelease}) {
      QMouseEvent event(step, QPointF(3, 3), button.mapToGlobal(QPointF(3, 3)), Qt::LeftButton,
                        step == type ? Qt::LeftButton : Qt::NoButton, Qt::ShiftModifier);
      event.setTimestamp(at);
      QCoreApplication::sendEvent(&button, &event);
    }
    return Started.Started.size();
  };
  EXPECT_EQ(press(QEvent::MouseButtonPress, 0), 1U);
  // Every other one comes as a double click.
  for (const auto type : {QEvent::MouseButtonDblClick, QEvent::MouseButtonPress,
                          QEvent::MouseButtonDblClick, QEvent::MouseButtonPress}) {
    EXPECT_EQ(press(type, interval - 1), 1U);
  }
  EXPECT_EQ(press(QEvent::MouseButtonPress, interval), 2U);
  EXPECT_EQ(Started.Started, (Texts{"DeleteWithoutConfirmation", "DeleteWithoutConfirmation"}));
}

TEST_F(PopUpsTest, TheExchangeButtonOffersCancelWhileTheGuardRests) {
  Show();
  QuillMnu& menus = Main.Menus();
  const auto offersCancel = [&menus] {
    return menus.MnuExchangeArray[4]->isVisible() && menus.MnuExchangeArray[5]->isVisible();
  };
  QWidget& button = Of("BtnExchange");
  EXPECT_EQ(Opened([&] {
              Click(Main, "BtnExchange");
              EXPECT_TRUE(offersCancel());
              EXPECT_FALSE(Guard.InUseTimer.isActive());
              EXPECT_TRUE(menus.MnuExchange->pos().y() >= button.mapToGlobal(QPoint()).y() ||
                          !menus.MnuExchange->isVisible());
            }),
            menus.MnuExchange);
  EXPECT_TRUE(Guard.InUseTimer.isActive());
  EXPECT_FALSE(offersCancel());
  EXPECT_EQ(Opened([&] {
              QTest::mouseClick(&button, Qt::RightButton);
              EXPECT_FALSE(offersCancel());
              EXPECT_TRUE(Guard.InUseTimer.isActive());
            }),
            menus.MnuExchange);
}

TEST_F(PopUpsTest, RestoringIsOfferedWhereThereIsSomethingToRestore) {
  Show();
  OpenedByMouse("BtnExchange");
  EXPECT_FALSE(CanRestore());
  ASSERT_EQ(Store.DeleteRecord("0", 0), RunTimeError::None);
  Select(0);
  OpenedByMouse("BtnExchange");
  EXPECT_TRUE(CanRestore());
  Shared.InUse = true;
  Main.ShowReadOnly();
  EXPECT_FALSE(CanRestore());
  OpenedByMouse("BtnExchange");
  EXPECT_FALSE(CanRestore());
  Shared.InUse = false;
  Main.ShowReadOnly();
  // As a submenu.
  Opened([this] {
    QTest::mouseClick(&Of("LstNames"), Qt::RightButton);
    Main.Menus().MnuLstNames.setActiveAction(Main.Menus().MnuExchange->menuAction());
    QTest::keyClick(&Main.Menus().MnuLstNames, Qt::Key_Right);
    EXPECT_TRUE(CanRestore());
    Main.Menus().MnuExchange->close();
  });
  Main.Menus().MnuExchangeArray[3]->trigger();
  EXPECT_EQ(Started.Started, Texts{"GetDeletedNamesList"});
}

TEST_F(PopUpsTest, TheStatusBarSwitchesOrderAndFilter) {
  Show();
  Select(2);
  QTest::mouseDClick(&Panel_(3), Qt::LeftButton);
  EXPECT_EQ(ListTexts(), (Texts{"( Acme )", "( Zeta )", "Bull"}));
  EXPECT_EQ(Label(0).Caption(), "Cole");
  EXPECT_EQ(Panel(2) + "|" + Panel(3), " 1/ 3|Company");
  EXPECT_TRUE(Main.Menus().MnuViewArray[1]->isChecked());
  // Each twice: the second time it is in force already.
  for (const int order : {1, 0, 0, 1, 1, 0}) {
    Main.Menus().MnuViewArray.at(static_cast<std::size_t>(order))->trigger();
    EXPECT_EQ(Shared.ViewMode, order);
    EXPECT_EQ(Main.Menus().MnuViewArray[0]->isChecked(), order == 0);
    EXPECT_EQ(Main.Menus().MnuViewArray[1]->isChecked(), order == 1);
  }
  EXPECT_EQ(Panel(2) + "|" + Panel(3), " 3/ 3|Name");

  for (const int panel : {1, 2, 3, 4}) QTest::mouseClick(&Panel_(panel), Qt::LeftButton);
  EXPECT_EQ(Panel(3), "Name");
  EXPECT_TRUE(Started.Started.empty());
  QTest::mouseDClick(&Panel_(4), Qt::LeftButton);
  FilterLastNames("e");
  Select(1);
  QTest::mouseDClick(&Panel_(4), Qt::LeftButton);
  EXPECT_EQ(Started.Started, (Texts{"ShowFilterDialog", "FilterOff"}));
  Main.SwitchView();
  EXPECT_EQ(ListTexts(), (Texts{"( Acme )", "( Zeta )"}));
  EXPECT_EQ(Label(0).Caption() + Panel(2), "Cole 1/ 2");
}

TEST_F(PopUpsTest, TheStatusBarTellsWhatItsPanelsDo) {
  Show();
  const auto hint = [this](int panel) {
    Main.SetPanel(1, QStringLiteral("before"));
    QTest::mouseMove(&Panel_(panel), QPoint(2, 2));
    QTest::mouseMove(&Panel_(panel), QPoint(5, 5));
    return Panel(1);
  };
  EXPECT_EQ(hint(3), "Double-Click to change, for this session only. (Right Click for options)");
  EXPECT_EQ(hint(4), "Double-Click to get Filter dialog. (Right Click for options)");
  EXPECT_EQ(hint(2), "");
  EXPECT_EQ(hint(1), "");
  Shared.FilterOn = true;
  EXPECT_EQ(hint(4), "Double-Click to turn Filter OFF. (Right Click for options)");
  // Nothing between the panels.
  QWidget& bar = Control<QWidget>(Main, "StatBar");
  QTest::mouseMove(&bar,
                   QPoint(Panel_(3).geometry().right() + 1, Panel_(3).geometry().center().y()));
  EXPECT_EQ(Panel(1), "Double-Click to turn Filter OFF. (Right Click for options)");

  EXPECT_EQ(Opened([this] { QTest::mouseClick(&Panel_(3), Qt::RightButton); }),
            Main.Menus().MnuView);
  EXPECT_EQ(Opened([this] { QTest::mouseClick(&Panel_(4), Qt::RightButton); }),
            Main.Menus().MnuFilter);
  EXPECT_EQ(Opened([this] { QTest::mouseClick(&Panel_(2), Qt::RightButton); }), nullptr);
}

}  // namespace
}  // namespace quillary::test
