#include "adapters/sqlite/reference_schema.h"

#include <array>

namespace tremvik {
namespace {

constexpr std::array kTodosCFOPs{ColunaFixa{.nome = "CFOP", .indice = true}, ColunaFixa{.nome = "Conjunto"},
                                 ColunaFixa{.nome = "GRUPO", .inteiro = true}};
constexpr std::array kQuadroCFOPs{
    ColunaFixa{.nome = "Descrição"}, ColunaFixa{.nome = "Grupo 15", .indice = true},
    ColunaFixa{.nome = "Grupo 26", .indice = true}, ColunaFixa{.nome = "Grupo 37", .indice = true},
    ColunaFixa{.nome = "Conjunto"}};
constexpr std::array kEstados{ColunaFixa{.nome = "Código", .indice = true}, ColunaFixa{.nome = "Sigla"}};
constexpr std::array kZonaFranca{ColunaFixa{.nome = "CódMunicípio", .indice = true},
                                 ColunaFixa{.nome = "Nome"}};
constexpr std::array kQuadroOcorrencias{ColunaFixa{.nome = "CódSubItem", .indice = true},
                                        ColunaFixa{.nome = "OpPróprias", .inteiro = true},
                                        ColunaFixa{.nome = "Descrição"}};
constexpr std::array kCodigosDipam{ColunaFixa{.nome = "código", .indice = true}};
constexpr std::array kMunicipios{ColunaFixa{.nome = "Códmunicípio", .indice = true},
                                 ColunaFixa{.nome = "Nome"}};
constexpr std::array kCNAEs{ColunaFixa{.nome = "CNAE", .indice = true}};

constexpr std::array kTabelas{
    TabelaFixa{"tblTodosCFOPs", "tblTodosCFOPs.csv", kTodosCFOPs},
    TabelaFixa{"tblQuadroCFOPs", "tblQuadroCFOPs.csv", kQuadroCFOPs},
    TabelaFixa{"tblEstados", "tblEstados.csv", kEstados},
    TabelaFixa{"tblMunicípiosZFM_ALC", "tblMunicipiosZFM_ALC.csv", kZonaFranca},
    TabelaFixa{"tblQuadroOcorrências", "tblQuadroOcorrencias.csv", kQuadroOcorrencias},
    TabelaFixa{"tblcódigosdipam", "tblcodigosdipam.csv", kCodigosDipam},
    TabelaFixa{"tblmunicípios", "tblmunicipios.csv", kMunicipios},
    TabelaFixa{"tblCNAEsRegimeDispensado", "tblCNAEsRegimeDispensado.csv", kCNAEs},
};

// What must hold for every row of a table, as SQL, and what to say of a row for which it does not.
struct Regra {
  std::string_view tabela;
  std::string_view condicao;
  std::string_view motivo;
};

constexpr std::string_view kConjunto = "Conjunto IN ('1', '2', '3')";
constexpr std::string_view kConjuntoMotivo = "Conjunto deve ser 1, 2 ou 3";
constexpr std::array kRegras{
    Regra{"tblTodosCFOPs", kConjunto, kConjuntoMotivo},
    Regra{"tblTodosCFOPs", "GRUPO IN (0, 1)", "GRUPO deve ser 0 (operação) ou 1 (título de grupo)"},
    Regra{"tblTodosCFOPs",
          "Conjunto <> '1' OR CFOP GLOB '[1-9].[0-9][0-9]' OR CFOP GLOB '[1-9].[0-9][0-9].[0-9]'",
          "no Conjunto 1 o CFOP tem a forma 1.12 ou 1.12.1"},
    Regra{"tblTodosCFOPs", "Conjunto = '1' OR CFOP GLOB '[1-9].[0-9][0-9][0-9]'",
          "nos Conjuntos 2 e 3 o CFOP tem a forma 1.102"},
    Regra{"tblQuadroCFOPs", kConjunto, kConjuntoMotivo},
    Regra{"tblQuadroCFOPs", "Descrição <> ''", "Descrição vazia"},
    Regra{"tblQuadroCFOPs", "[Grupo 15] <> '' OR [Grupo 26] <> '' OR [Grupo 37] <> ''",
          "nenhum dos três grupos tem CFOP"},
    Regra{"tblQuadroCFOPs", "[Grupo 15] = '' OR [Grupo 15] GLOB '[15].[0-9][0-9]*'",
          "Grupo 15 deve estar vazio ou começar por 1 ou 5"},
    Regra{"tblQuadroCFOPs", "[Grupo 26] = '' OR [Grupo 26] GLOB '[26].[0-9][0-9]*'",
          "Grupo 26 deve estar vazio ou começar por 2 ou 6"},
    Regra{"tblQuadroCFOPs", "[Grupo 37] = '' OR [Grupo 37] GLOB '[37].[0-9][0-9]*'",
          "Grupo 37 deve estar vazio ou começar por 3 ou 7"},
    Regra{"tblEstados", "Código GLOB '[0-9][0-9]'", "Código deve ter dois algarismos"},
    Regra{"tblEstados", "Sigla GLOB '[A-Z][A-Z]'", "Sigla deve ter duas letras maiúsculas"},
    Regra{"tblMunicípiosZFM_ALC", "CódMunicípio <> '' AND CódMunicípio NOT GLOB '*[^0-9]*'",
          "CódMunicípio deve ter só algarismos"},
    Regra{"tblQuadroOcorrências", "CódSubItem GLOB '[0-9][0-9][0-9].[0-9][0-9]'",
          "CódSubItem tem a forma 002.23"},
    Regra{"tblQuadroOcorrências", "OpPróprias IN (0, 1, -1)",
          "OpPróprias deve ser 1 (operações próprias) ou 0 (substituição tributária)"},
    Regra{"tblcódigosdipam", "length(código) BETWEEN 1 AND 3", "código deve ter de um a três caracteres"},
    Regra{"tblmunicípios", "length(Códmunicípio) > 3 AND Códmunicípio NOT GLOB '*[^0-9]*'",
          "Códmunicípio deve ter só algarismos, quatro ou mais"},
    Regra{"tblCNAEsRegimeDispensado", "CNAE GLOB '[0-9][0-9][0-9][0-9][0-9][0-9][0-9]'",
          "CNAE deve ter sete algarismos"},
};

struct Exame {
  sqlite::Connection& banco;
  const TabelaFixa& tabela;
  bool com_rowid;
  std::vector<LinhaInvalida> invalidas;

  void Exigir(std::string_view condicao, std::string_view motivo) {
    const std::string chave = Identificador(tabela.colunas.front().nome);
    std::string sql("SELECT ");
    sql.append(com_rowid ? "rowid" : "0").append(", ").append(chave).append(" FROM ");
    sql.append(Identificador(tabela.nome)).append(" WHERE NOT (").append(condicao).append(")");
    sqlite::Statement linhas = banco.Prepare(sql);
    while (linhas.Step()) {
      std::string nome(tabela.colunas.front().nome);
      nome.append(" '").append(linhas.Text(1)).append("'");
      invalidas.push_back({linhas.Integer(0), std::move(nome), std::string(motivo)});
    }
  }
};

}  // namespace

std::span<const TabelaFixa> TabelasFixas() { return kTabelas; }

std::string Identificador(std::string_view nome) { return std::string("\"").append(nome).append("\""); }

std::vector<LinhaInvalida> LinhasInvalidas(sqlite::Connection& banco, const TabelaFixa& tabela,
                                           bool com_rowid) {
  Exame exame{banco, tabela, com_rowid, {}};
  for (const ColunaFixa& coluna : tabela.colunas) {
    std::string condicao("typeof(");
    condicao.append(Identificador(coluna.nome)).append(coluna.inteiro ? ") = 'integer'" : ") = 'text'");
    exame.Exigir(condicao,
                 std::string(coluna.nome)
                     .append(coluna.inteiro ? " deve ser um número inteiro" : " deve ser um texto"));
  }
  for (const Regra& regra : kRegras) {
    if (regra.tabela == tabela.nome) exame.Exigir(regra.condicao, regra.motivo);
  }
  return std::move(exame.invalidas);
}

}  // namespace tremvik
