#include "store/delimited_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace quillary::test {
namespace {

using Fields = std::vector<std::string>;

const LineFormat Comma{",", false};
const LineFormat CommaAndQuotes{"\",\"", true};

TEST(DelimitedLineTest, CountsFields) {
  EXPECT_EQ(CountFields("", Comma), 1U);
  EXPECT_EQ(CountFields(std::string(19, ','), Comma), 20U);
  EXPECT_EQ(CountFields(std::string(25, ','), Comma), 20U);
  EXPECT_EQ(CountFields("aXXbXXXc", {"XX", false}), 3U);
  EXPECT_EQ(CountFields("a and b", {" AND ", false}), 1U);
  EXPECT_EQ(CountFields("\"a,b\",\"c\"", CommaAndQuotes), 2U);
}

TEST(DelimitedLineTest, SplitsALine) {
  EXPECT_EQ(SplitLine(" a ,", Comma, 4), (Fields{" a ", "", "", ""}));
  EXPECT_EQ(SplitLine("a,b,c,d", Comma, 2), (Fields{"a", "b"}));
  EXPECT_EQ(SplitLine(R"("a ""b"", c","d")", CommaAndQuotes, 2), (Fields{R"(a ""b"", c)", "d"}));
  EXPECT_EQ(SplitLine("\u201Ca\",\"b\u201D", CommaAndQuotes, 2), (Fields{"a", "b"}));
  for (const char* line : {"", "x", "\u201C", "xy"}) {
    EXPECT_EQ(SplitLine(line, CommaAndQuotes, 2), (Fields{"", ""})) << line;
  }
}

TEST(DelimitedLineTest, MakesARecordOfTheFieldsByTheirMeaning) {
  Fields values;
  std::vector<int> choices;
  for (int choice = 0; choice <= NoneOfTheAbove; ++choice) {
    if (choice == FirstThenLastName || choice == LastThenFirstName) continue;
    values.push_back(FieldMeanings.at(static_cast<std::size_t>(choice)));
    choices.push_back(choice);
  }
  EXPECT_EQ(MakeRecord(values, choices),
            (FieldArray{"Salute", "1st. Name", "2nd. Name", "Title", "Company", "Address1",
                        "Address2", "Address3", "Address4", "ZIP/Postal Code", "Country", "Phone1",
                        "Phone2", "Fax", "E-Mail", "Notes"}));
  // The later one of two counts, be it empty.
  EXPECT_EQ(MakeRecord({"Ann", "Lee", ""}, {1, 2, 2})[Field::LastName], "");
  EXPECT_EQ(MakeRecord({"x", " "}, {NoneOfTheAbove, 2})[Field::FirstName], "NULL NAME");
  EXPECT_EQ(MakeRecord({"Acme"}, {6})[Field::FirstName], "");
}

TEST(DelimitedLineTest, SplitsBothNamesAtTheFirstBlank) {
  const auto names = [](const char* value, FieldMeaning choice) {
    const FieldArray record = MakeRecord({value}, {choice});
    return record[Field::FirstName] + "|" + record[Field::LastName];
  };
  EXPECT_EQ(names("Ann van Lee", FirstThenLastName), "Ann|van Lee");
  EXPECT_EQ(names("Lee Ann Mary", LastThenFirstName), "Ann Mary|Lee");
  EXPECT_EQ(names("Ann", LastThenFirstName), "Ann|");
  EXPECT_EQ(names(" Ann", FirstThenLastName), "|Ann");
  // One word leaves the last name of another field alone.
  EXPECT_EQ(MakeRecord({"Lee", "Ann"}, {2, FirstThenLastName})[Field::LastName], "Lee");
}

}  // namespace
}  // namespace quillary::test
