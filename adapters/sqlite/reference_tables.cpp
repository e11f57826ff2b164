#include "adapters/sqlite/reference_tables.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>

#include "adapters/local/local_files.h"
#include "adapters/sqlite/csv_reader.h"
#include "adapters/sqlite/embedded_tables.h"
#include "adapters/sqlite/reference_schema.h"
#include "host/runtime_error.h"

namespace tremvik {
namespace {

using Problemas = std::vector<std::string>;
// Gives a file's text by its name, or nothing when it cannot be read.
using Leitor = std::function<std::optional<std::string>(std::string_view arquivo)>;

constexpr std::size_t kMostradasPorTabela = 10;

std::string Texto(std::initializer_list<std::string_view> partes) {
  std::string texto;
  for (const auto parte : partes)
    texto.append(parte);
  return texto;
}

// Cuts the problems of one table, those from `inicio` on, to what a person reads.
void Resumir(Problemas& problemas, std::size_t inicio, std::string_view tabela) {
  if (problemas.size() - inicio <= kMostradasPorTabela) return;
  const std::size_t resto = problemas.size() - inicio - kMostradasPorTabela;
  problemas.resize(inicio + kMostradasPorTabela);
  problemas.push_back(Texto({tabela, ": e mais ", std::to_string(resto), " problema(s)."}));
}

// Loads one table from its CSV text, remembering on which line of the file each row began.
class CargaDeTabela {
 public:
  CargaDeTabela(sqlite::Connection& banco, const TabelaFixa& tabela, Problemas& problemas)
      : banco_(banco), tabela_(tabela), problemas_(problemas) {}

  void Carregar(std::string_view csv) {
    const std::size_t antes = problemas_.size();
    try {
      CsvReader leitor(csv);
      LerLinhas(leitor);
    } catch (const CsvError& erro) {
      Anotar(erro.linha, erro.texto);
    }
    if (linhas_.empty() && problemas_.size() == antes) Anotar(1, "a tabela não tem nenhuma linha");
    if (problemas_.size() == antes) Conferir();
  }
  [[nodiscard]] std::size_t linhas() const { return linhas_.size(); }

 private:
  void Anotar(int linha, std::string_view texto) {
    problemas_.push_back(Texto({tabela_.arquivo, ":", std::to_string(linha), ": ", texto, "."}));
  }

  // Which column of the file each column of the table is; empty after a problem.
  std::vector<std::size_t> LerCabecalho(CsvReader& leitor) {
    std::vector<std::string> nomes;
    leitor.Next(nomes);
    std::vector<std::size_t> lugares;
    const std::size_t antes = problemas_.size();
    for (const ColunaFixa& coluna : tabela_.colunas) {
      const auto achada = std::ranges::find(nomes, coluna.nome);
      if (achada == nomes.end()) {
        Anotar(1,
               Texto({"falta a coluna '", coluna.nome, "' (primeira linha: nomes, separados por vírgula)"}));
      }
      lugares.push_back(static_cast<std::size_t>(achada - nomes.begin()));
    }
    for (std::size_t i = 0; i < nomes.size(); ++i) {
      const bool conhecida = std::ranges::count(tabela_.colunas, nomes[i], &ColunaFixa::nome) > 0;
      const bool repetida = std::ranges::count(std::span(nomes).first(i), nomes[i]) > 0;
      if (!conhecida) Anotar(1, Texto({"a coluna '", nomes[i], "' não é desta tabela"}));
      if (conhecida && repetida) Anotar(1, Texto({"a coluna '", nomes[i], "' aparece mais de uma vez"}));
    }
    if (problemas_.size() != antes) lugares.clear();
    return lugares;
  }

  void LerLinhas(CsvReader& leitor) {
    const auto lugares = LerCabecalho(leitor);
    if (lugares.empty()) return;
    std::string sql = Texto({"INSERT INTO ", Identificador(tabela_.nome), " VALUES (?"});
    for (std::size_t i = 1; i < lugares.size(); ++i)
      sql.append(", ?");
    sqlite::Statement inserir = banco_.Prepare(sql.append(")"));
    for (std::vector<std::string> campos; leitor.Next(campos);) {
      if (campos.size() != lugares.size()) {
        Anotar(leitor.linha(), Texto({"a linha tem ", std::to_string(campos.size()), " campo(s), devia ter ",
                                      std::to_string(lugares.size())}));
        continue;
      }
      for (std::size_t i = 0; i < lugares.size(); ++i) {
        inserir.Bind(static_cast<int>(i) + 1, std::string_view{campos[lugares[i]]});
      }
      inserir.Run();
      linhas_.push_back(leitor.linha());
    }
  }

  void Conferir() {
    for (const auto& invalida : LinhasInvalidas(banco_, tabela_, true)) {
      Anotar(linhas_.at(static_cast<std::size_t>(invalida.rowid - 1)),
             Texto({invalida.chave, ": ", invalida.motivo}));
    }
  }

  sqlite::Connection& banco_;
  const TabelaFixa& tabela_;
  Problemas& problemas_;
  std::vector<int> linhas_;
};

void CriarTabela(sqlite::Connection& banco, const TabelaFixa& tabela) {
  std::string sql = Texto({"CREATE TABLE ", Identificador(tabela.nome), " ("});
  for (const ColunaFixa& coluna : tabela.colunas) {
    if (sql.back() != '(') sql.append(", ");
    sql.append(Identificador(coluna.nome)).append(coluna.inteiro ? " INTEGER NOT NULL" : " TEXT NOT NULL");
  }
  banco.Execute(sql.append(")"));
}

void CriarIndices(sqlite::Connection& banco, const TabelaFixa& tabela) {
  for (const ColunaFixa& coluna : tabela.colunas) {
    if (!coluna.indice) continue;
    const std::string nome = Texto({tabela.nome, ".", coluna.nome});
    banco.Execute(Texto({"CREATE INDEX ", Identificador(nome), " ON ", Identificador(tabela.nome), " (",
                         Identificador(coluna.nome), ")"}));
  }
}

using ContagensPorArquivo = std::map<std::string, std::size_t, std::less<>>;

// Raises nlohmann's errors.
ContagensPorArquivo LerContagens(const std::string& json) {
  ContagensPorArquivo contagens;
  const auto descricao = nlohmann::json::parse(json);
  for (const auto& tabela : descricao.at("tables")) {
    if (!tabela.contains("rows")) continue;
    contagens[tabela.at("file").get<std::string>()] = tabela.at("rows").get<std::size_t>();
  }
  return contagens;
}

// The row counts that "tables.json" states; none without that file.
ContagensPorArquivo Contagens(const Leitor& ler, Problemas& problemas) {
  const auto json = ler("tables.json");
  try {
    return json ? LerContagens(*json) : ContagensPorArquivo();
  } catch (const nlohmann::json::exception& erro) {
    problemas.push_back(Texto({"tables.json: não foi possível entender o arquivo: ", erro.what(), "."}));
    return {};
  }
}

void Carregar(sqlite::Connection& banco, const Leitor& ler, Problemas& problemas) {
  const auto contagens = Contagens(ler, problemas);
  sqlite::Transaction transacao(banco);
  for (const TabelaFixa& tabela : TabelasFixas()) {
    CriarTabela(banco, tabela);
    const auto csv = ler(tabela.arquivo);
    if (!csv) {
      problemas.push_back(Texto({tabela.arquivo, ": o arquivo não existe ou não pode ser lido."}));
      continue;
    }
    const std::size_t antes = problemas.size();
    CargaDeTabela carga(banco, tabela, problemas);
    carga.Carregar(*csv);
    const auto contagem = contagens.find(tabela.arquivo);
    if (problemas.size() == antes && contagem != contagens.end() && contagem->second != carga.linhas()) {
      problemas.push_back(Texto({tabela.arquivo, ": o arquivo tem ", std::to_string(carga.linhas()),
                                 " linhas, tables.json diz ", std::to_string(contagem->second),
                                 "; complete as linhas ou corrija tables.json."}));
    }
    Resumir(problemas, antes, tabela.arquivo);
    CriarIndices(banco, tabela);
  }
  transacao.Commit();
}

// A file that is removed unless it took the target's place.
class Substituto {
 public:
  explicit Substituto(std::string_view alvo) : alvo_(alvo), nome_(Texto({alvo, ".novo-XXXXXX"})) {
    const int descritor = ::mkostemp(nome_.data(), O_CLOEXEC);
    if (descritor < 0)
      throw RuntimeError(errno == ENOENT ? erro::kBancoNaoEncontrado : FileErrorNumber(errno));
    ::fchmod(descritor, S_IRUSR | S_IWUSR | S_IRGRP | S_IROTH);
    ::close(descritor);
  }
  ~Substituto() {
    if (!nome_.empty()) std::remove(nome_.c_str());
  }
  Substituto(const Substituto&) = delete;
  Substituto& operator=(const Substituto&) = delete;

  [[nodiscard]] const std::string& nome() const { return nome_; }
  // Only a file whose bytes are on the disk may take the place of a good one.
  void Assumir() {
    const int descritor = ::open(nome_.c_str(), O_RDONLY | O_CLOEXEC);
    const bool gravado = descritor >= 0 && ::fsync(descritor) == 0;
    const int codigo = errno;
    if (descritor >= 0) ::close(descritor);
    if (!gravado) throw RuntimeError(FileErrorNumber(codigo));
    if (std::rename(nome_.c_str(), alvo_.c_str()) != 0) throw RuntimeError(FileErrorNumber(errno));
    nome_.clear();
  }

 private:
  std::string alvo_;
  std::string nome_;
};

Problemas Construir(const Leitor& ler, std::string_view arquivo) {
  Substituto novo(arquivo);
  Problemas problemas;
  {
    sqlite::Connection banco(novo.nome(), SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE);
    banco.Execute("PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF");
    Carregar(banco, ler, problemas);
  }
  if (problemas.empty()) novo.Assumir();
  return problemas;
}

void VerificarTabela(sqlite::Connection& banco, const TabelaFixa& tabela, Problemas& problemas) {
  sqlite::Statement colunas = banco.Prepare("SELECT name FROM pragma_table_info(?)");
  colunas.Bind(1, tabela.nome);
  std::vector<std::string> nomes;
  while (colunas.Step())
    nomes.emplace_back(colunas.Text(0));
  if (nomes.empty()) {
    problemas.push_back(Texto({tabela.nome, ": a tabela não existe."}));
    return;
  }
  const std::size_t antes = problemas.size();
  for (const ColunaFixa& coluna : tabela.colunas) {
    if (std::ranges::find(nomes, coluna.nome) == nomes.end()) {
      problemas.push_back(Texto({tabela.nome, ": falta a coluna '", coluna.nome, "'."}));
    }
  }
  if (problemas.size() != antes) return;
  if (banco.Number("SELECT count(*) FROM " + Identificador(tabela.nome)) == 0) {
    problemas.push_back(Texto({tabela.nome, ": a tabela não tem nenhuma linha."}));
  }
  for (const auto& invalida : LinhasInvalidas(banco, tabela, false)) {
    problemas.push_back(Texto({tabela.nome, ": ", invalida.chave, ": ", invalida.motivo, "."}));
  }
}

}  // namespace

std::vector<std::string> ConstruirTabelas(std::string_view dados_dir, std::string_view arquivo) {
  const std::filesystem::path pasta(dados_dir);
  std::error_code ignorado;
  if (!std::filesystem::is_directory(pasta, ignorado)) {
    return {Texto({"A pasta '", dados_dir, "' não existe ou não pode ser lida."})};
  }
  return Construir(
      [&pasta](std::string_view nome) -> std::optional<std::string> {
        std::ifstream entrada(pasta / nome, std::ios::binary);
        if (!entrada) return std::nullopt;
        std::string texto(std::istreambuf_iterator<char>(entrada), {});
        return entrada.bad() ? std::nullopt : std::optional(std::move(texto));
      },
      arquivo);
}

void ConstruirTabelasPadrao(std::string_view arquivo) {
  const auto problemas = Construir(
      [](std::string_view nome) -> std::optional<std::string> {
        const auto embutidos = ArquivosEmbutidos();
        const auto achado = std::ranges::find(embutidos, nome, &ArquivoEmbutido::nome);
        if (achado == embutidos.end()) return std::nullopt;
        return std::string(achado->texto);
      },
      arquivo);
  if (!problemas.empty()) throw RuntimeError(erro::kArgumentoInvalido, problemas.front());
}

std::vector<std::string> VerificarTabelas(std::string_view arquivo) {
  sqlite::Connection banco(std::string(arquivo), SQLITE_OPEN_READONLY);
  if (banco.Number("PRAGMA schema_version") == 0) throw sqlite::EngineError(banco.get(), SQLITE_NOTADB);
  Problemas problemas;
  for (const TabelaFixa& tabela : TabelasFixas()) {
    const std::size_t antes = problemas.size();
    VerificarTabela(banco, tabela, problemas);
    Resumir(problemas, antes, tabela.nome);
  }
  return problemas;
}

}  // namespace tremvik
