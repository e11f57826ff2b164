#include "tests/support/file_builder.h"

#include <algorithm>
#include <array>
#include <map>
#include <stdexcept>

namespace tremvik::test {
namespace {

// Every "@" run of a default stands for the record's number among its kind under the same parent.
struct Layout {
  std::string_view code, parent, columns, defaults;
};
constexpr std::array kLayouts{
    Layout{"01", "", "CR 2,TipoDocto 2,DataGeração 8,HoraGeração 6,VersãoFrontEnd 4,VersãoPref 4,Q05 4",
           "TipoDocto=01; DataGeração=20120401; HoraGeração=101500; VersãoPref=0210"},
    Layout{"05", "01",
           "CR 2,IE 12,CNPJ 14,CNAE 7,RegTrib 2,Ref 6,RefInicial 6,Tipo 2,Movimento 1,Transmitida 1,"
           "SaldoCredPeriodoAnt 15,SaldoCredPeriodoAntST 15,SemRegra 14,OrigemPreDig 1,ICMSFixPer 15,"
           "ChaveInterna 32,Q07 4,Q10 4,Q20 4,Q30 4,Q31 4",
           "IE=1100424901@@; CNPJ=12345678000195; RegTrib=01; Ref=201203"},
    Layout{"07", "05", "CR 2,PrópriaOuST 1,Valor 15,Data 8", "Valor=12345; Data=201203@@"},
    Layout{
        "10", "05",
        "CR 2,CFOP 6,ValorContábil 15,BaseCálculo 15,Imposto 15,IsentasNãoTrib 15,Outras 15,ImpostoRetidoST 15,"
        "ImpRetSubstitutoST 15,ImpRetSubstituÍdo 15,OutrosImpostos 15,Q14 4",
        "CFOP=11@@00; ValorContábil=123456789"},
    Layout{"14", "10", "CR 2,Conteúdo 138,Q18 4", ""},
    Layout{"18", "14", "CR 2,Conteúdo 51", ""},
    Layout{"20", "05",
           "CR 2,CódSubItem 5,Valor 15,PrópriaOuST 1,FLegal 100,Ocorrência 300,Q25 4,Q26 4,Q27 4,Q28 4",
           "CódSubItem=003@@; FLegal=; Ocorrência="},
    Layout{"25", "20", "CR 2,IE 12,Valor 15", "IE=1100424901@@; Valor=100"},
    Layout{"26", "20", "CR 2,IESubstituto 12,NF 9,DataInicio 6,DataFim 6,Valor 15",
           "IESubstituto=1100424901@@; NF=1; DataInicio=201201; DataFim=201202; Valor=100"},
    Layout{"27", "20", "CR 2,IESubstituído 12,NF 9,Valor 15", "IESubstituído=1100424901@@; NF=1; Valor=100"},
    Layout{"28", "20", "CR 2,CodAutorizacao 12,Valor 15", "CodAutorizacao=100dubl000@@; Valor=100"},
    Layout{"30", "05", "CR 2,Conteúdo 22", "Conteúdo=@@"},
    Layout{"31", "05", "CR 2,RE 15", "RE=@@@@@"},
};

// The sub-item and kind of an occurrence follow from its first detail.
constexpr std::pair<std::string_view, std::string_view> kByDetail[] = {
    {"25", "CódSubItem=00730"},
    {"26", "CódSubItem=00210"},
    {"27", "CódSubItem=00701; PrópriaOuST=1"},
    {"28", "CódSubItem=00220"},
};

const Layout& LayoutOf(std::string_view code) { return *std::ranges::find(kLayouts, code, &Layout::code); }

std::string Numbered(std::string_view text, int ordinal) {
  std::string result(text);
  for (auto i = result.rfind('@'); i != std::string::npos; i = result.rfind('@')) {
    result[i] = static_cast<char>('0' + ordinal % 10);
    ordinal /= 10;
  }
  return result;
}

std::pair<std::string_view, std::string_view> Cut(std::string_view text, char separator) {
  const auto at = text.find(separator);
  if (at == std::string_view::npos) return {text, {}};
  return {text.substr(0, at), text.substr(at + 1)};
}

int Number(std::string_view digits) { return std::stoi(std::string(digits)); }

}  // namespace

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  while (!text.empty()) {
    auto [piece, rest] = Cut(text, separator);
    piece.remove_prefix(std::min(piece.find_first_not_of(' '), piece.size()));
    if (!piece.empty()) pieces.push_back(piece);
    text = rest;
  }
  return pieces;
}

std::span<const std::string_view> Codes() {
  static const auto codes = [] {
    std::array<std::string_view, kLayouts.size()> all{};
    std::ranges::transform(kLayouts, all.begin(), &Layout::code);
    return all;
  }();
  return codes;
}

const std::vector<Column>& ColumnsOf(std::string_view code) {
  static std::map<std::string, std::vector<Column>, std::less<>> all;
  auto& own = all[std::string(code)];
  if (!own.empty()) return own;
  int position = 1;
  for (const std::string_view column : Split(LayoutOf(code).columns, ',')) {
    const auto [name, width] = Cut(column, ' ');
    own.push_back({std::string(name), position, Number(width)});
    position += own.back().width;
  }
  own.push_back({"Separadores", position, 2});
  return own;
}

FileBuilder::FileBuilder(std::string_view kinds) {
  Append("01");
  for (const std::string_view kind : Split(kinds, ' ')) {
    const auto [code, times] = Cut(kind, '*');
    for (int i = times.empty() ? 1 : Number(times); i > 0; --i)
      Append(code);
  }
  Announce();
}

void FileBuilder::Append(std::string_view code) {
  const Layout& layout = LayoutOf(code);
  const int ordinal = ++ordinals_[std::string(code)];
  for (const Layout& child : kLayouts) {
    if (child.parent == code) ordinals_.erase(std::string(child.code));
  }
  const Column& end = ColumnsOf(code).back();
  codes_.emplace_back(code);
  records_.push_back(std::string(static_cast<std::size_t>(end.position) - 1, '0') + "\r\n");
  Set(records_.size() - 1, "CR", code);
  for (const std::string_view given : Split(layout.defaults, ';')) {
    const auto [field, value] = Cut(given, '=');
    Set(records_.size() - 1, field, Numbered(value, ordinal));
  }
}

// Quantities, and what a record owes to its details.
void FileBuilder::Announce() {
  std::map<std::string, std::size_t, std::less<>> last;
  std::map<std::pair<std::size_t, std::string>, int> counts;
  for (std::size_t i = 0; i < codes_.size(); ++i) {
    const std::string_view parent = LayoutOf(codes_[i]).parent;
    if (!parent.empty() && last.contains(parent)) ++counts[{last.find(parent)->second, codes_[i]}];
    last[codes_[i]] = i;
  }
  for (const auto& [key, count] : counts) {
    const auto& [parent, code] = key;
    Set(parent, "Q" + code, std::to_string(count));
    if (code == "14") Set(parent, "CFOP", "6" + records_[parent].substr(3, 5));
    const auto* const detail =
        std::ranges::find(kByDetail, std::string_view(code), [](const auto& d) { return d.first; });
    if (detail == std::end(kByDetail)) continue;
    for (const std::string_view given : Split(detail->second, ';'))
      Set(parent, Cut(given, '=').first, Cut(given, '=').second);
    Set(parent, "Valor", std::to_string(100 * count));
  }
  for (std::size_t i = 0; i < codes_.size(); ++i) {
    if (codes_[i] == "20" && records_[i].substr(7, 15) == std::string(15, '0')) Set(i, "Valor", "100");
  }
}

void FileBuilder::Set(std::size_t record, std::string_view field, std::string_view value) {
  const auto& columns = ColumnsOf(codes_.at(record));
  const auto column = std::ranges::find(columns, field, &Column::name);
  if (column == columns.end()) throw std::logic_error("no such field: " + std::string(field));
  const auto width = static_cast<std::size_t>(column->width);
  const auto start = static_cast<std::size_t>(column->position) - 1;
  std::string text(value);
  if (field == "Separadores") {
    records_[record].replace(start, std::string::npos, text);
    return;
  }
  if (text.size() > width) throw std::logic_error("too long for " + std::string(field) + ": " + text);
  const bool words = field == "FLegal" || field == "Ocorrência";
  text.insert(words ? text.size() : 0, width - text.size(), words ? ' ' : '0');
  records_[record].replace(start, width, text);
}

int FileBuilder::Line(std::string_view code, int ordinal) const {
  for (std::size_t i = 0; i < codes_.size(); ++i) {
    if (codes_[i] == code && --ordinal == 0) return static_cast<int>(i) + 1;
  }
  throw std::logic_error("no such record: " + std::string(code));
}

std::string FileBuilder::Record(int line) const {
  std::string record = records_.at(static_cast<std::size_t>(line) - 1);
  if (line == Lines()) {
    record.replace(record.size() - std::min(cut_, record.size()), std::string::npos,
                   std::min(cut_, record.size()), '\0');
  }
  return record;
}

FileBuilder& FileBuilder::With(std::string_view field, std::string_view value) {
  const auto [record, name] = Cut(field, '.');
  const auto [code, ordinal] = Cut(record, '#');
  const int line = Line(code, ordinal.empty() ? 1 : Number(ordinal));
  Set(static_cast<std::size_t>(line) - 1, name, value);
  return *this;
}

FileBuilder& FileBuilder::Edit(std::string_view edits) {
  for (const std::string_view edit : Split(edits, ';')) {
    const auto [field, value] = Cut(edit, '=');
    if (field == "cut") {
      cut_ = static_cast<std::size_t>(Number(value));
    } else {
      With(field, value);
    }
  }
  return *this;
}

std::string FileBuilder::Bytes() const {
  std::string bytes;
  for (const std::string& record : records_)
    bytes += record;
  bytes.resize(bytes.size() - cut_);
  return bytes;
}

}  // namespace tremvik::test
