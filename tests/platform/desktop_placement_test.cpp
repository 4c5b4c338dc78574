#include <gtest/gtest.h>

#include "platform/desktop/placement.h"
#include "platform/desktop/twips.h"

namespace quillary::test {
namespace {

const QRect kScreen(0, 0, 1600, 1200);
const QSize kDialog(400, 300);

TEST(Placement, DialogStandsInTheMainWindowsTopRightCorner) {
  EXPECT_EQ(PlaceAtCorner(QRect(200, 100, 800, 600), kDialog, kScreen),
            QPoint(200 + 800 - 400 - Px(150), 100 + Px(150)));
}

TEST(Placement, DialogIsHeldAtEveryEdgeOfItsScreen) {
  const int right = 1600 - 400 - Px(150);
  const int bottom = 1200 - 300 - Px(300);
  EXPECT_EQ(HoldOnScreen(QPoint(5000, 5000), kDialog, kScreen), QPoint(right, bottom));
  EXPECT_EQ(HoldOnScreen(QPoint(-50, -50), kDialog, kScreen), QPoint(Px(150), Px(300)));
  // A window larger than the screen keeps its title bar in reach.
  EXPECT_EQ(HoldOnScreen(QPoint(0, 0), QSize(2000, 2000), kScreen), QPoint(Px(150), Px(300)));

  const QRect second(1600, -200, 1600, 1200);
  EXPECT_EQ(HoldOnScreen(QPoint(0, -900), kDialog, second), QPoint(1600 + Px(150), -200 + Px(300)));
  EXPECT_EQ(HoldOnScreen(QPoint(9000, 9000), kDialog, second), QPoint(1600 + right, -200 + bottom));
}

TEST(Placement, CentredWindowMayLeaveTheMainWindow) {
  EXPECT_EQ(PlaceCentred(QRect(100, 50, 800, 600), kDialog), QPoint(300, 200));
  EXPECT_EQ(PlaceCentred(QRect(0, 0, 200, 100), kDialog), QPoint(-100, -100));
}

}  // namespace
}  // namespace quillary::test
