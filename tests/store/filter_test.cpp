#include "tests/support/check_invariants.h"
#include "tests/support/store_world.h"

namespace quillary::test {
namespace {

struct FilterTest : StoreTest {
  FilterTest() {
    World.Add("Bo", "Jansen", "Acme");
    World.Add("Cy", "SANDERS", "Zinc  Works");
    World.Add("Al", "Brandt", "");
    World.Add("Έλλη", "ΠΑΠΠΆ", "Ödmjuk");
    World.Add("Di", "Miller", "acme");
  }
  // The names that a filter leaves.
  Texts Filter(const std::array<std::string, 5>& criteria) {
    World.Filter(criteria);
    EXPECT_TRUE(CheckInvariants(World));
    Texts lines = World.Lines.Texts;
    // One record asked for by itself gives the same answer.
    for (const auto& recNo : Data.NamesRecNo) {
      const bool isIn = std::find(World.Lines.RecNos.begin(), World.Lines.RecNos.end(), recNo) !=
                        World.Lines.RecNos.end();
      EXPECT_EQ(World.Store.RecordMatchesFilter(recNo), isIn) << recNo;
    }
    return lines;
  }
};

TEST_F(FilterTest, AnyPositionAnyCaseAllCriteria) {
  EXPECT_EQ(Filter({"", "an"}), (Texts{"Brandt, Al", "Jansen, Bo", "SANDERS, Cy"}));
  EXPECT_EQ(Filter({"b", "aN", "", "ACM"}), Texts{"Jansen, Bo"});
  EXPECT_EQ(Filter({"", "παππά"}), Texts{"ΠΑΠΠΆ, Έλλη"});
  EXPECT_EQ(Filter({"έλ", "", "", "öD"}), Texts{"ΠΑΠΠΆ, Έλλη"});
  // Blanks count.
  EXPECT_EQ(Filter({"", "", "", "  "}), Texts{"SANDERS, Cy"});
  EXPECT_EQ(Filter({"", "", "", " w"}), Texts{"SANDERS, Cy"});
  EXPECT_EQ(Filter({"", " an"}), Texts{});
  EXPECT_EQ(Filter({"", "", "x"}), Texts{});
}

// How fields stand in the files is the business of the search that it shares with Find.
TEST_F(FilterTest, TheLastCriterionIsForTheNotes) {
  Set("2", "Notes", "\"quoted\"\r\nline \xff");
  EXPECT_EQ(Filter({"", "", "", "", "ED\"\r\nL"}), Texts{"Brandt, Al"});
}

TEST_F(FilterTest, TellsItsProgressRecordByRecord) {
  Data.FilterCriteria = {"", "an", "", "c"};
  World.Store.BuildFilteredList();
  EXPECT_EQ(World.Progress.Stages.back(), "Please wait. Searching...|");
  EXPECT_EQ(World.Progress.Steps.size(), 8U);  // five records, then the three that are left
  EXPECT_EQ(World.Progress.Steps.back(), 100);
  World.Store.GetFilteredNamesList();
  EXPECT_EQ(World.Progress.Stages.back(), "Please wait. Getting filtered names list...|");
  EXPECT_EQ(World.Progress.Steps, (std::vector<double>{50, 100}));
}

}  // namespace
}  // namespace quillary::test
