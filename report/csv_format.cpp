#include "report/csv_format.h"

#include <array>
#include <string_view>

#include "report/catalogue.h"
#include "report/words.h"
#include "text/csv_cell.h"

namespace tremvik::report {
namespace {

// A row by its cells; those not named stay empty.
struct Row {
  std::string_view arquivo, estado, tipo, regra;
  int linha = 0, coluna = 0, largura = 0;
  std::string_view registro, campo, valor;
  std::string mensagem, porque;
  std::string_view como_mendar;
  bool doImportador = false;
};

constexpr std::array kColumns{"arquivo",  "estado",  "tipo",       "regra",       "linha",
                              "coluna",   "largura", "registro",   "campo",       "valor",
                              "mensagem", "porque",  "comoMendar", "doImportador"};

std::string Number(int number) { return number > 0 ? std::to_string(number) : std::string(); }

std::string Line(const Row& row) {
  const std::string numbers[] = {Number(row.linha), Number(row.coluna), Number(row.largura)};
  const std::array<std::string_view, kColumns.size()> cells{row.arquivo,     row.estado,
                                                            row.tipo,        row.regra,
                                                            numbers[0],      numbers[1],
                                                            numbers[2],      row.registro,
                                                            row.campo,       row.valor,
                                                            row.mensagem,    row.porque,
                                                            row.como_mendar, row.doImportador ? "sim" : ""};
  std::string line;
  for (const std::string_view cell : cells)
    line.append(line.empty() ? "" : ";").append(text::CsvCell(cell));
  return line + "\r\n";
}

Row OfFinding(Row row, const Finding& finding) {
  const Rule* const rule = FindRule(finding.regra);
  row.tipo = TipoName(finding.tipo);
  row.regra = finding.regra;
  row.linha = finding.linha;
  row.coluna = finding.coluna;
  row.largura = finding.largura;
  row.registro = finding.registro;
  row.campo = finding.campo;
  row.valor = finding.valor;
  row.mensagem = OneLine(finding.mensagem);
  row.porque = OneLine(finding.porque);
  if (rule != nullptr) row.como_mendar = rule->como_mendar;
  row.doImportador = finding.doImportador;
  return row;
}

}  // namespace

std::string CsvFormat::Begin(const Heading& /*heading*/) {
  std::string line = "\xEF\xBB\xBF";
  for (const std::string_view column : kColumns)
    line.append(column == kColumns.front() ? "" : ";").append(column);
  return line + "\r\n";
}

std::string CsvFormat::File(const FileReport& file) {
  const Examination& exame = file.exame;
  Row whole;
  whole.arquivo = file.arquivo;
  whole.estado = NameOf(file.estado);
  std::string lines;
  for (const Finding& finding : exame.inconsistencias)
    lines += Line(OfFinding(whole, finding));
  for (const Unexamined& unexamined : exame.naoExaminado) {
    Row row = whole;
    row.tipo = "não examinado";
    row.linha = unexamined.linha;
    row.mensagem = InWords(unexamined);
    lines += Line(row);
  }
  whole.mensagem = exame.limitado ? std::string(kLimitReached) : OneLine(file.problema);
  if (lines.empty() || !whole.mensagem.empty()) lines += Line(whole);
  return lines;
}

std::string CsvFormat::End(const Summary& /*summary*/) { return {}; }

}  // namespace tremvik::report
