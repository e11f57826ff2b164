// The tables of cases/: files with a fault, and what is said of it.
#include <gtest/gtest.h>

#include <set>
#include <tuple>

#include "layout/kinds.h"
#include "tests/support/cases.h"

namespace tremvik::test {
namespace {

TEST(Tables, Header) { CheckTable("header.txt"); }
TEST(Tables, Cfops) { CheckTable("cfops.txt"); }
TEST(Tables, Occurrences) { CheckTable("occurrences.txt"); }
TEST(Tables, Details) { CheckTable("details.txt"); }
TEST(Tables, Records) { CheckTable("records.txt"); }

// The fields of cases/fields.txt are those of the layouts.
TEST(Tables, EveryFieldOfEveryKind) {
  std::set<std::tuple<std::string_view, std::string_view, int, int>> program, makers;
  for (const KindInfo& kind : kKinds) {
    for (const FieldInfo& field : kind.fields)
      program.emplace(kind.code, field.name, field.position, field.width);
  }
  for (const Column& column : Columns())
    makers.emplace(column.record, column.name, column.position, column.width);
  EXPECT_EQ(program, makers);
}

// Every field of every kind, spoiled by a letter between the text passes and the run; and every two of a
// kind.
TEST(Tables, ALetterInAnyFieldIsRefusedInItsPlaceAndTurn) {
  constexpr std::string_view kEveryKind = "05 07 10 14 18 20 26 20 28 20 27 20 25 30 31";
  const FileBuilder file(kEveryKind);
  struct Spoiled {
    std::string where, edit, first, second;
    Place place;
  };
  std::vector<Spoiled> all;  // in the order of the rules
  for (const auto& [where, cells] : ReadTable("fields.txt", 4)) {
    if (cells[2].empty()) continue;
    const std::string code = cells[0].substr(0, 2);
    const Column& column = ColumnOf(code, cells[0].substr(3));
    const int line = file.Line(code);
    std::string value = file.Record(line).substr(static_cast<std::size_t>(column.position) - 1,
                                                 static_cast<std::size_t>(column.width));
    value.back() = 'G';
    const std::string edit = "~" + cells[0] + "=" + value;
    const Place place{line, code, column.name, column.position, column.width, value};
    all.push_back({where, edit, cells[2], cells[3], place});
    for (const Spoiled& upper : all) {
      if (upper.place.line != line) continue;
      SCOPED_TRACE(upper.where + " and " + where);
      Place told = Check({kEveryKind, upper.edit + ";" + edit, line, upper.first, upper.second});
      told.porque.clear();
      EXPECT_EQ(told, upper.place);
    }
  }
}

}  // namespace
}  // namespace tremvik::test
