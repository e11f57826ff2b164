#include "report/catalogue.h"

#include <algorithm>
#include <vector>

#include "report/embedded_texts.h"
#include "text/csv_reader.h"

namespace tremvik::report {
namespace {

std::vector<Rule> ReadCatalogue() {
  std::vector<Rule> rules;
  text::CsvReader reader(EmbeddedCatalogue());
  std::vector<std::string> row;
  reader.Next(row);  // the names of the columns
  while (reader.Next(row)) {
    rules.push_back({row.at(0), row.at(1), row.at(2), row.at(3), row.at(4), row.at(5), row.at(6)});
  }
  return rules;
}

}  // namespace

std::span<const Rule> Catalogue() {
  static const std::vector<Rule> kRules = ReadCatalogue();
  return kRules;
}

const Rule* FindRule(std::string_view codigo) {
  const auto rules = Catalogue();
  const auto found = std::ranges::find(rules, codigo, &Rule::codigo);
  return found == rules.end() ? nullptr : &*found;
}

}  // namespace tremvik::report
