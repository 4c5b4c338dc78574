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
    Show();
  }
  // The menu that comes up, which is closed again.
  QWidget* Opened(const std::function<void()>& open) {
    open();
    QWidget* menu = QApplication::activePopupWidget();
    if (menu != nullptr) menu->close();
    return menu;
  }
  QWidget* OpenedByMouse(const char* name) {
    QWidget& control =
        name == std::string("LstNames") ? *Control<ListBox>(Main, name).viewport() : Widget(name);
    return Opened([&] { QTest::mouseClick(&control, Qt::RightButton); });
  }
  QWidget* OpenedByKey(const char* name) {
    return Opened([&] {
      Widget(name).setFocus();
      PressKey(Main, Qt::Key_F10, Qt::ShiftModifier);
    });
  }
  void DoubleClick(const char* name) { QTest::mouseDClick(&Widget(name), Qt::LeftButton); }

  QuillMnu& Menus = Main.Menus();
};

TEST_F(PopUpsTest, EachControlHasItsMenu) {
  Select(1);
  for (const auto& [control, menu] : {std::pair<const char*, QWidget*>{"BtnCopy", Menus.MnuCopy},
                                      {"BtnNew", Menus.MnuNew},
                                      {"BtnDelete", Menus.MnuDelete},
                                      {"BtnFilter", Menus.MnuFilter},
                                      {"BtnExchange", Menus.MnuExchange},
                                      {"LstNames", &Menus.MnuLstNames},
                                      {"BtnEdit", nullptr}}) {
    EXPECT_EQ(OpenedByMouse(control), menu) << control;
    EXPECT_EQ(OpenedByKey(control), menu) << control;
  }
  EXPECT_EQ(OpenedByMouse("Panel(2)"), nullptr);
  EXPECT_EQ(OpenedByMouse("Panel(3)"), Menus.MnuView);
  EXPECT_EQ(OpenedByMouse("Panel(4)"), Menus.MnuFilter);
  EXPECT_EQ(Label(0).Caption(), "Bull");  // the mouse was on another line
  EXPECT_TRUE(Started.Started.empty());
  Shared.InUse = true;
  Main.SetData();
  for (const char* control : {"BtnNew", "BtnDelete"}) EXPECT_EQ(OpenedByMouse(control), nullptr);
}

// The buttons' own commands are clicked where their windows are.
TEST_F(PopUpsTest, ItemsAndHeldKeysStartTheirCommands) {
  for (const auto& [item, command] : {std::pair{Menus.MnuNewArray[1], "ShowDuplicateDialog"},
                                      {Menus.MnuEdit, "ShowEditDialog"},
                                      {Menus.MnuDeleteArray[0], "ShowDeleteDialog"},
                                      {Menus.MnuDeleteArray[1], "DeleteWithoutConfirmation"},
                                      {Menus.MnuFilterArray[0], "ShowFilterDialog"},
                                      {Menus.MnuFilterArray[1], "FilterOff"},
                                      {Menus.MnuTipOfDay, "ShowTipOfDay"},
                                      {Menus.MnuAbout, "ShowAboutDialog"},
                                      {Menus.MnuExchangeArray[3], "GetDeletedNamesList"}}) {
    Menus.EnableRestore(true);
    item->trigger();
    EXPECT_EQ(std::exchange(Started.Started, {}), Texts{command});
  }
  EXPECT_FALSE(Menus.MnuFilterArray[0]->isChecked());  // not in force yet
  Click(Main, "BtnNew", Qt::ShiftModifier);
  Click(Main, "BtnNew", Qt::ShiftModifier | Qt::ControlModifier);
  Click(Main, "BtnDelete", Qt::ShiftModifier | Qt::AltModifier);
  Click(Main, "BtnDial");
  Click(Main, "CopyrightLabel");
  EXPECT_EQ(Started.Started, (Texts{"ShowDuplicateDialog", "ShowNewDialog", "ShowDeleteDialog",
                                    "OpenDialer", "ShowAboutDialog"}));
}

// However often it is pressed, one record is deleted; a press that comes later is meant.
TEST_F(PopUpsTest, HurriedPressesOfDeleteDeleteOnce) {
  QWidget& button = Widget("BtnDelete");
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
  const auto offersCancel = [this] {
    return Menus.MnuExchangeArray[4]->isVisible() && Menus.MnuExchangeArray[5]->isVisible();
  };
  Opened([&] {
    Click(Main, "BtnExchange");
    EXPECT_TRUE(offersCancel() && !Guard.InUseTimer.isActive());
  });
  Opened([&] {
    QTest::mouseClick(&Widget("BtnExchange"), Qt::RightButton);
    EXPECT_TRUE(!offersCancel() && Guard.InUseTimer.isActive());
  });
}

TEST_F(PopUpsTest, RestoringIsOfferedWhereThereIsSomethingToRestore) {
  const auto canRestore = [this] {
    OpenedByMouse("BtnExchange");
    return Menus.MnuExchangeArray[3]->isEnabled();
  };
  EXPECT_FALSE(canRestore());
  ASSERT_EQ(Store.DeleteRecord("0", 0), RunTimeError::None);
  EXPECT_TRUE(canRestore());
  Shared.InUse = true;
  EXPECT_FALSE(canRestore());
  Shared.InUse = false;
  // As a submenu.
  Opened([&] {
    QTest::mouseClick(Control<ListBox>(Main, "LstNames").viewport(), Qt::RightButton);
    Menus.MnuLstNames.setActiveAction(Menus.MnuExchange->menuAction());
    QTest::keyClick(&Menus.MnuLstNames, Qt::Key_Right);
    EXPECT_TRUE(Menus.MnuExchangeArray[3]->isEnabled());
    Menus.MnuExchange->close();
  });
  Shared.InUse = true;
  Main.ShowReadOnly();
  EXPECT_FALSE(Menus.MnuExchangeArray[3]->isEnabled());
}

TEST_F(PopUpsTest, TheStatusBarSwitchesOrderAndFilter) {
  const auto shown = [this] { return Label(0).Caption() + Panel(2) + "|" + Panel(3); };
  Select(2);
  DoubleClick("Panel(3)");
  EXPECT_EQ(ListTexts(), (Texts{"( Acme )", "( Zeta )", "Bull"}));
  EXPECT_EQ(shown(), "Cole 1/ 3|Company");
  // Each twice: the second time it is in force already.
  for (const int order : {1, 0, 0, 1, 1, 0}) {
    Menus.MnuViewArray.at(static_cast<std::size_t>(order))->trigger();
    EXPECT_EQ(Shared.ViewMode, order);
    EXPECT_EQ(Menus.MnuViewArray[0]->isChecked(), order == 0);
    EXPECT_EQ(Menus.MnuViewArray[1]->isChecked(), order == 1);
  }
  for (const char* panel : {"Panel(1)", "Panel(2)", "Panel(3)", "Panel(4)"}) Click(Main, panel);
  EXPECT_EQ(shown(), "Cole 3/ 3|Name");
  EXPECT_TRUE(Started.Started.empty());
  DoubleClick("Panel(4)");
  FilterLastNames("e");
  Select(1);
  QTest::mouseMove(&Widget("Panel(4)"), QPoint(5, 5));
  EXPECT_EQ(Panel(1), "Double-Click to turn Filter OFF. (Right Click for options)");
  DoubleClick("Panel(4)");
  EXPECT_EQ(Started.Started, (Texts{"ShowFilterDialog", "FilterOff"}));
  Main.SwitchView();
  EXPECT_EQ(ListTexts(), (Texts{"( Acme )", "( Zeta )"}));
  EXPECT_EQ(shown(), "Cole 1/ 2|Company");
}

}  // namespace
}  // namespace quillary::test
