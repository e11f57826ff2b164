// The tables of cases/: files with a fault, and what is said of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

TEST(Tables, Header) { CheckTable("header.txt"); }
TEST(Tables, Cfops) { CheckTable("cfops.txt"); }
TEST(Tables, Occurrences) { CheckTable("occurrences.txt"); }
TEST(Tables, Details) { CheckTable("details.txt"); }
TEST(Tables, Records) { CheckTable("records.txt"); }

// Every field of every kind, spoiled by a letter between the text passes and the run.
TEST(Tables, ALetterInAnyFieldIsRefusedInItsPlace) {
  std::set<std::string> fields;
  for (const std::string_view code : Codes()) {
    for (const Column& column : ColumnsOf(code))
      fields.insert(std::string(code) + "." + column.name);
  }
  constexpr std::string_view kEveryKind = "05 07 10 14 18 20 26 20 28 20 27 20 25 30 31";
  for (const auto& [where, cells] : ReadTable("fields.txt", 3)) {
    SCOPED_TRACE(where);
    const std::string& field = cells[0];
    EXPECT_EQ(fields.erase(field), 1U);
    if (cells[1].empty()) continue;
    const FileBuilder file(kEveryKind);
    const std::string code = field.substr(0, 2);
    const Column& column = *std::ranges::find(ColumnsOf(code), field.substr(3), &Column::name);
    const int line = file.Line(code);
    std::string value = file.Record(line).substr(static_cast<std::size_t>(column.position) - 1, static_cast<std::size_t>(column.width));
    value.back() = 'G';
    const std::string edit = std::string("~").append(field).append("=").append(value);
    const Place place = Check({kEveryKind, edit, line, cells[1], cells[2]});
    EXPECT_EQ(place, (Place{line, code, column.name, column.position, column.width, value}));
  }
  EXPECT_TRUE(fields.empty()) << "not in the table: " << *fields.begin();
}

}  // namespace
}  // namespace tremvik::test
