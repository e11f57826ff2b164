#include "sample/rule_examples.h"

#include <algorithm>

#include "runtime/numbers.h"
#include "sample/embedded_texts.h"
#include "sample/file_builder.h"
#include "text/csv_reader.h"

namespace tremvik::sample {
namespace {

RuleExample FromRow(const std::vector<std::string>& row) {
  RuleExample example;
  example.codigo = row.at(0);
  example.registros = row.at(1);
  example.edicoes = row.at(2);
  example.correcao = row.at(3);
  example.linha = IntVal(row.at(4));
  const std::string& place = row.at(5);
  const auto point = std::min(place.find('.'), place.size());
  example.registro = place.substr(0, point);
  example.campo = place.substr(std::min(point + 1, place.size()));
  example.linha_citada = row.at(6).empty() ? example.linha : IntVal(row.at(6));
  for (const std::string_view value : Split(row.at(7), ';'))
    example.valores.emplace_back(value);
  example.porque = row.at(8);
  example.motivo = row.at(9);
  return example;
}

std::vector<RuleExample> ReadExamples() {
  std::vector<RuleExample> examples;
  text::CsvReader reader(EmbeddedExamples());
  std::vector<std::string> row;
  reader.Next(row);  // the names of the columns
  while (reader.Next(row))
    examples.push_back(FromRow(row));
  return examples;
}

}  // namespace

std::span<const RuleExample> RuleExamples() {
  static const std::vector<RuleExample> kExamples = ReadExamples();
  return kExamples;
}

const RuleExample* FindRuleExample(std::string_view codigo) {
  const auto examples = RuleExamples();
  const auto found = std::ranges::find(examples, codigo, &RuleExample::codigo);
  return found == examples.end() ? nullptr : &*found;
}

std::string Broken(const RuleExample& example) {
  return FileBuilder(example.registros).Edit(example.edicoes).Bytes();
}

std::string Mended(const RuleExample& example) {
  constexpr std::string_view kOther = "registros=";
  std::string_view edits = example.correcao;
  if (edits.empty()) return FileBuilder(example.registros).Bytes();
  std::string_view records = example.registros;
  if (edits.starts_with(kOther)) {
    records = Split(edits.substr(kOther.size()), ';').front();
    edits.remove_prefix(std::min(edits.size(), kOther.size() + records.size() + 1));
  }
  return FileBuilder(records).Edit(example.edicoes).Edit(edits).Bytes();
}

}  // namespace tremvik::sample
