#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>
#include <nlohmann/json.hpp>
#include <numeric>
#include <variant>

#include "adapters/sqlite/declaration_store.h"
#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"
#include "text/json_text.h"
#include "text/readable.h"
#include "text/style.h"
#include "text/table.h"

namespace tremvik::cli {
namespace {

using Json = nlohmann::ordered_json;

// "2012-03" as people write it: "03/2012".
std::string MonthAndYear(const std::string& month) {
  return month.size() == 7 ? month.substr(5) + "/" + month.substr(0, 4) : month;
}

// "2012-03-20T12:34:56Z" as this machine's day and time, "20/03/2012 09:34".
std::string LocalTime(const std::string& utc) {
  std::tm when{};
  if (std::sscanf(utc.c_str(), "%d-%d-%dT%d:%d:%d", &when.tm_year, &when.tm_mon, &when.tm_mday, &when.tm_hour,
                  &when.tm_min, &when.tm_sec) != 6) {
    return utc;
  }
  when.tm_year -= 1900;
  when.tm_mon -= 1;
  const std::time_t time = timegm(&when);
  std::tm local{};
  localtime_r(&time, &local);
  std::array<char, 32> text{};
  const std::size_t size = std::strftime(text.data(), text.size(), "%d/%m/%Y %H:%M", &local);
  return {text.data(), size};
}

std::string CountsByKind(const DeclaracaoGuardada& declaracao) {
  std::string counts;
  for (std::size_t i = 0; i < kStoredKinds.size(); ++i) {
    if (declaracao.registros[i] == 0 || kStoredKinds[i] == Kind::kCr05) continue;
    counts.append(counts.empty() ? "" : " ").append(Codigo(kStoredKinds[i]));
    counts.append("=").append(std::to_string(declaracao.registros[i]));
  }
  return counts;
}

void WriteDeclarationsAsJson(const std::vector<DeclaracaoGuardada>& declaracoes, Output& out) {
  for (const auto& declaracao : declaracoes) {
    Json json{{"tipo", "declaracao"},
              {"ie", declaracao.ie},
              {"cnpj", declaracao.cnpj},
              {"regime", declaracao.regime},
              {"referencia", declaracao.referencia},
              {"referenciaInicial", declaracao.referencia_inicial},
              {"importadoEm", declaracao.importado_em},
              {"origem", declaracao.arquivo}};
    Json& registros = json["registros"] = Json::object();
    for (std::size_t i = 0; i < kStoredKinds.size(); ++i) {
      registros[std::string(Codigo(kStoredKinds[i]))] = declaracao.registros[i];
    }
    out.Write(text::JsonText(json) + "\n");
  }
}

void WriteDeclarations(const std::vector<DeclaracaoGuardada>& declaracoes, const Terminal& terminal,
                       Output& out) {
  text::TextTable table{
      {{"IE"}, {"Referência"}, {"Regime"}, {"Registros", true}, {"Importada em"}, {"Por tipo (CR)"}}, {}};
  for (const auto& declaracao : declaracoes) {
    const int total = std::accumulate(declaracao.registros.begin(), declaracao.registros.end(), 0);
    table.rows.push_back({declaracao.ie, MonthAndYear(declaracao.referencia), declaracao.regime,
                          std::to_string(total), LocalTime(declaracao.importado_em),
                          CountsByKind(declaracao)});
  }
  // The last column may run over the edge; turning the whole list by it would hide the overview.
  out.Write(table.Render(static_cast<std::size_t>(-1), terminal.colour));
  out.Write("\n" + text::Count(declaracoes.size(), "declaração", "declarações") + ".\n");
}

Json ValueOf(const Celula& celula) {
  if (const auto* number = std::get_if<std::int64_t>(&celula)) return *number;
  if (const auto* text = std::get_if<std::string>(&celula)) return *text;
  return nullptr;
}

std::string TextOf(const Celula& celula) {
  if (const auto* number = std::get_if<std::int64_t>(&celula)) return std::to_string(*number);
  if (const auto* text = std::get_if<std::string>(&celula)) return *text;
  return {};
}

void WriteRecordsAsJson(const std::vector<TabelaGuardada>& tabelas, Output& out) {
  for (const auto& tabela : tabelas) {
    for (const auto& linha : tabela.linhas) {
      Json json{{"tipo", "registro"}, {"registro", Codigo(tabela.registro)}, {"tabela", tabela.nome}};
      Json& campos = json["campos"] = Json::object();
      for (std::size_t i = 0; i < linha.size(); ++i)
        campos[tabela.colunas[i]] = ValueOf(linha[i]);
      out.Write(text::JsonText(json) + "\n");
    }
  }
}

// The display form of a value says what its cents say; people read one of them.
bool IsForPeople(const std::string& column) { return !column.ends_with("_centavos"); }

bool IsNumber(const TabelaGuardada& tabela, std::size_t column) {
  const bool value =
      std::ranges::find(tabela.colunas, tabela.colunas[column] + "_centavos") != tabela.colunas.end();
  return value || std::ranges::all_of(tabela.linhas, [column](const auto& linha) {
           return !std::holds_alternative<std::string>(linha[column]);
         });
}

text::TextTable TableForPeople(const TabelaGuardada& tabela) {
  text::TextTable table;
  table.rows.resize(tabela.linhas.size());
  for (std::size_t i = 0; i < tabela.colunas.size(); ++i) {
    if (!IsForPeople(tabela.colunas[i])) continue;
    table.columns.push_back({tabela.colunas[i], IsNumber(tabela, i)});
    for (std::size_t row = 0; row < table.rows.size(); ++row) {
      table.rows[row].push_back(TextOf(tabela.linhas[row][i]));
    }
  }
  return table;
}

void WriteRecords(const std::vector<TabelaGuardada>& tabelas, const Terminal& terminal, Output& out) {
  for (const auto& tabela : tabelas) {
    const std::string heading = "CR=" + std::string(Codigo(tabela.registro)) + " " +
                                text::Visible(tabela.nome) + " (" +
                                text::Count(tabela.linhas.size(), "registro", "registros") + ")";
    if (&tabela != &tabelas.front()) out.Write("\n");
    out.Write(text::Styled(heading, text::Style::kGood, terminal.colour) + "\n");
    out.Write(TableForPeople(tabela).Render(terminal.width, terminal.colour));
  }
}

class Listar final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"listar", "Mostra as declarações guardadas",
            "Exemplos:\n"
            "  tremvik listar\n"
            "  tremvik listar 110.042.490.114\n"
            "  tremvik listar 110042490114 03/2012      mostra os registros da declaração\n"
            "  tremvik listar --json"};
  }

  void Declare(VerbOptions& options) override {
    options.Argument("IE", ie_, "Inscrição estadual, com ou sem pontos", false);
    options.Argument("REFERENCIA", referencia_, "Mês: AAAAMM, AAAA-MM ou MM/AAAA", false);
    options.Folder(pasta);
    options.Json(json_, "Escreve um objeto JSON por linha");
  }

  [[nodiscard]] std::string Complaint() override;
  [[nodiscard]] ExitStatus Execute(const Terminal& terminal, Output& out, Output& err) override;
  [[nodiscard]] std::string Sentence(const RuntimeError& error) const override {
    return Remedy(error, pasta, Database::kStore);
  }

 private:
  ExitStatus ListOne(DeclarationStore& store, const Terminal& terminal, Output& out, Output& err) const;

  std::string ie_;          ///< dotted form; empty for all
  std::string referencia_;  ///< "AAAA-MM"; empty for all
  bool json_ = false;
};

std::string Listar::Complaint() {
  const std::string ie = ie_;
  const std::string referencia = referencia_;
  ie_ = NormalizarIE(ie);
  referencia_ = NormalizarReferencia(referencia);
  if (!ie.empty() && ie_.empty())
    return text::InQuotes(ie) + " não é uma inscrição estadual: são doze algarismos, com ou sem pontos";
  if (!referencia.empty() && referencia_.empty())
    return text::InQuotes(referencia) + " não é uma referência: use AAAAMM, AAAA-MM ou MM/AAAA";
  return {};
}

ExitStatus Listar::ListOne(DeclarationStore& store, const Terminal& terminal, Output& out,
                           Output& err) const {
  const auto tabelas = store.Registros(ie_, referencia_);
  if (tabelas.empty()) {
    err.Write("tremvik: a declaração de " + ie_ + " de " + MonthAndYear(referencia_) + " não está em \"" +
              text::Visible(pasta) + "\". Veja as que estão com: tremvik listar\n");
    return ExitStatus::kEnvironment;
  }
  if (json_) {
    WriteRecordsAsJson(tabelas, out);
  } else {
    WriteRecords(tabelas, terminal, out);
  }
  return ExitStatus::kAccepted;
}

ExitStatus Listar::Execute(const Terminal& terminal, Output& out, Output& err) {
  DeclarationStore store(pasta);
  if (!referencia_.empty()) return ListOne(store, terminal, out, err);

  auto declaracoes = store.Listar();
  if (!ie_.empty()) std::erase_if(declaracoes, [this](const auto& one) { return one.ie != ie_; });
  if (json_) {
    WriteDeclarationsAsJson(declaracoes, out);
  } else if (declaracoes.empty()) {
    out.Write("Nenhuma declaração" + (ie_.empty() ? "" : " de " + ie_) + " está guardada em \"" +
              text::Visible(pasta) + "\". Para guardar: tremvik importar ARQUIVO\n");
  } else {
    WriteDeclarations(declaracoes, terminal, out);
  }
  return ExitStatus::kAccepted;
}

}  // namespace

std::unique_ptr<Verb> MakeListar() { return std::make_unique<Listar>(); }

}  // namespace tremvik::cli
