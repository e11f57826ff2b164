#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

#include "adapters/sqlite/declaration_store.h"
#include "cli/examined_file.h"
#include "cli/line_range.h"
#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"
#include "examination/workpiece.h"
#include "report/file_tree.h"
#include "report/tree_view.h"
#include "report/words.h"
#include "text/json_text.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

using Json = nlohmann::ordered_json;
using report::TreeRecord;

// What a field of a record holds; empty where it is not there.
std::string_view Held(const TreeRecord& record, std::string_view field) {
  const FieldInfo* const info = FindField(*record.kind, field);
  return info == nullptr ? std::string_view() : FieldText(record.content, *info);
}

class Mostrar final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"mostrar", "Mostra um arquivo campo a campo, com as suas faltas",
            "Exemplos:\n"
            "  tremvik mostrar marco.txt\n"
            "  tremvik mostrar marco.txt --linha 96\n"
            "  tremvik mostrar marco.txt --linha 90-99\n"
            "  tremvik mostrar marco.txt --declaracao 110.042.490.114,03/2012\n"
            "  tremvik mostrar marco.txt --json > marco.jsonl\n\n"
            "Um arquivo com defeito é mostrado até onde dá; ✗ marca o que a importação\n"
            "recusa e ? o que ela pergunta."};
  }

  void Declare(VerbOptions& options) override {
    options.Argument("ARQUIVO", arquivo_, "Arquivo Pré-Formatado", true);
    const auto lines = [this](const std::string& text) { return TakeLines(text); };
    options.Judged("--linha", lines, "N[-M]", "Só essa linha, ou da linha N à linha M");
    const auto declaration = [this](const std::string& text) { return TakeDeclaration(text); };
    options.Judged("--declaracao", declaration, "IE[,REF]",
                   "Só as declarações dessa IE, ou a dessa referência");
    options.Folder(pasta);
    options.Json(json_, "Escreve um objeto JSON por registro");
  }

  [[nodiscard]] ExitStatus Execute(const Terminal& terminal, Output& out, Output& err) override;

 private:
  std::string TakeLines(const std::string& text);
  std::string TakeDeclaration(const std::string& text);
  [[nodiscard]] std::vector<const TreeRecord*> Chosen(const report::FileTree& tree) const;
  [[nodiscard]] bool IsChosen(const report::FileTree& tree, const TreeRecord& record) const;
  [[nodiscard]] std::string NothingChosen(const report::FileTree& tree) const;
  void WriteTree(const report::FileTree& tree, const ExaminedFile& file, const text::Look& look,
                 Output& out) const;
  void WriteJson(const report::FileTree& tree, const ExaminedFile& file, Output& out) const;

  std::string arquivo_;
  std::optional<LineRange> linhas_;
  std::string declaracao_;  ///< as it was given; empty for all
  std::string ie_;          ///< twelve digits
  std::string referencia_;  ///< AAAAMM; empty for all
  bool json_ = false;
};

std::string Mostrar::TakeLines(const std::string& text) {
  linhas_ = ParseLineRange(text);
  return linhas_ ? ""
                 : "o valor " + text::InQuotes(text) + " não é uma linha (96) nem de uma a outra (90-99)";
}

std::string Mostrar::TakeDeclaration(const std::string& text) {
  const auto comma = text.find(',');
  const std::string_view month = comma == std::string::npos ? "" : std::string_view(text).substr(comma + 1);
  declaracao_ = text;
  ie_ = NormalizarIE(std::string_view(text).substr(0, comma));
  referencia_ = NormalizarReferencia(month);
  std::erase(ie_, '.');
  std::erase(referencia_, '-');
  if (!ie_.empty() && month.empty() == referencia_.empty()) return {};
  return "o valor " + text::InQuotes(text) + " não é IE ou IE,REF, como 110.042.490.114,03/2012";
}

bool Mostrar::IsChosen(const report::FileTree& tree, const TreeRecord& record) const {
  if (linhas_ && !linhas_->Contains(record.linha)) return false;
  if (ie_.empty()) return true;
  if (!record.declaracao) return false;
  const TreeRecord& header = tree.records()[*record.declaracao];
  return Held(header, "IE") == ie_ && (referencia_.empty() || Held(header, "Ref") == referencia_);
}

std::vector<const TreeRecord*> Mostrar::Chosen(const report::FileTree& tree) const {
  std::vector<const TreeRecord*> chosen;
  for (const TreeRecord& record : tree.records()) {
    if (IsChosen(tree, record)) chosen.push_back(&record);
  }
  return chosen;
}

std::string Mostrar::NothingChosen(const report::FileTree& tree) const {
  if (tree.records().empty())
    return text::InQuotes(arquivo_) + " está vazio. Confira se a cópia se completou";
  if (!ie_.empty()) {
    return fmt::format("{} não tem a declaração {}{}", text::InQuotes(arquivo_), text::Visible(declaracao_),
                       linhas_ ? " nessas linhas" : "");
  }
  return fmt::format("{} não tem essa linha: termina na {}", text::InQuotes(arquivo_), tree.records().size());
}

void Mostrar::WriteJson(const report::FileTree& tree, const ExaminedFile& file, Output& out) const {
  const auto findings = report::ByLine(file.exame.inconsistencias);
  for (const TreeRecord* const record : Chosen(tree))
    out.Write(text::JsonText(report::RecordAsJson(tree, *record, findings)) + "\n");
  Json end{
      {"tipo", "fim"},
      {"arquivo", arquivo_},
      {"tamanho", file.bytes.size()},
      {"linhas", tree.records().size()},
      {"estado",
       file.problema.empty() ? (file.exame.estado == FileState::kAccepted ? "aceito" : "recusado") : "erro"},
      {"causa", tree.causa()},
      {"cortado", tree.cut()},
      {"inconsistencias", file.exame.inconsistencias.size()}};
  out.Write(text::JsonText(end) + "\n");
}

void Mostrar::WriteTree(const report::FileTree& tree, const ExaminedFile& file, const text::Look& look,
                        Output& out) const {
  const auto findings = report::ByLine(file.exame.inconsistencias);
  const auto chosen = Chosen(tree);
  if (!tree.causa().empty()) {
    const std::string what = tree.mended() ? " O que se vê é o arquivo sem isso." : "";
    out.Write(text::StyledLines("Atenção: " + tree.causa() + what, text::Style::kFault, look));
  }
  const auto layout = chosen.size() == 1 ? report::FieldLayout::kOneALine : report::FieldLayout::kFlowing;
  if (!chosen.empty()) out.Write(report::RenderAncestors(tree, *chosen.front(), look));
  for (const TreeRecord* const record : chosen) {
    if (out.failed()) return;
    out.Write(report::RenderRecord(tree, *record, findings, layout, look));
  }
  for (const auto& [line, found] : findings) {
    if (line > 0 && static_cast<std::size_t>(line) <= tree.records().size()) continue;
    for (const Finding* const finding : found)
      out.Write(report::RenderFindingShort(*finding, 0, look));
  }
  if (tree.cut())
    out.Write("…\nO arquivo tem mais linhas do que se mostra: no máximo 32.766 podem ser importadas.\n");
}

// "12 declarações, 103 registros: recusado, 1 falta."
std::string SummaryOf(const Examination& exame) {
  const bool accepted = exame.estado == FileState::kAccepted;
  const auto questions = static_cast<std::size_t>(
      std::ranges::count(exame.inconsistencias, FindingKind::kQuestion, &Finding::tipo));
  const std::size_t faults = exame.inconsistencias.size() - questions;
  std::string words = fmt::format(
      "{}, {}: {}", text::Count(static_cast<std::uint64_t>(exame.declaracoes), "declaração", "declarações"),
      text::Count(static_cast<std::uint64_t>(exame.registros), "registro", "registros"),
      accepted ? "aceito" : "recusado");
  if (faults > 0) words += ", " + text::Count(faults, "falta", "faltas");
  if (questions > 0) words += ", " + text::Count(questions, "aviso", "avisos");
  return words + (exame.limitado ? "; pode haver mais.\n" : ".\n");
}

ExitStatus Mostrar::Execute(const Terminal& terminal, Output& out, Output& err) {
  const ExaminedFile file = ReadAndExamine(arquivo_, pasta);
  if (file.lido) {
    const report::FileTree tree(file.bytes);
    if (Chosen(tree).empty()) {
      err.Write("tremvik: " + NothingChosen(tree) + ".\n");
      return ExitStatus::kEnvironment;
    }
    if (json_) {
      WriteJson(tree, file, out);
    } else {
      WriteTree(tree, file, {.colour = terminal.colour, .width = terminal.width}, out);
      if (file.problema.empty()) out.Write("\n" + SummaryOf(file.exame));
    }
  }
  if (file.problema.empty()) return ExitStatus::kAccepted;
  out.Flush();
  err.Write("tremvik: " + file.problema + "\n");
  return ExitStatus::kEnvironment;
}

}  // namespace

std::unique_ptr<Verb> MakeMostrar() { return std::make_unique<Mostrar>(); }

}  // namespace tremvik::cli
