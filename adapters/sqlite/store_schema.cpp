#include "adapters/sqlite/store_schema.h"

#include <algorithm>
#include <array>

#include "host/runtime_error.h"

namespace tremvik {
namespace {

using enum Forma;

constexpr std::array kDeclaracao{
    ColunaGuardada{"IE", "ie"},
    ColunaGuardada{"CNPJ", "cnpj"},
    ColunaGuardada{"CNAE", "cnae"},
    ColunaGuardada{"RegTrib", "regime"},
    ColunaGuardada{"Ref", "referencia", kPeriodo},
    ColunaGuardada{"RefInicial", "referencia_inicial", kPeriodo},
    ColunaGuardada{"Tipo", "tipo", kInteiro},
    ColunaGuardada{"Movimento", "movimento", kInteiro},
    ColunaGuardada{"Transmitida", "transmitida", kInteiro},
    ColunaGuardada{"SaldoCredPeriodoAnt", "saldo_cred_periodo_ant", kValor},
    ColunaGuardada{"SaldoCredPeriodoAntST", "saldo_cred_periodo_ant_st", kValor},
    ColunaGuardada{"SemRegra", "sem_regra"},
    ColunaGuardada{"OrigemPreDig", "origem_pre_dig", kInteiro},
    ColunaGuardada{"ICMSFixPer", "icms_fix_per", kValor},
    ColunaGuardada{"ChaveInterna", "chave_interna"},
    ColunaGuardada{"Q07", "q07", kInteiro},
    ColunaGuardada{"Q10", "q10", kInteiro},
    ColunaGuardada{"Q20", "q20", kInteiro},
    ColunaGuardada{"Q30", "q30", kInteiro},
    ColunaGuardada{"Q31", "q31", kInteiro},
};
constexpr std::array kPagamento{
    ColunaGuardada{"PrópriaOuST", "propria_ou_st", kInteiro},
    ColunaGuardada{"Valor", "valor", kValor},
    ColunaGuardada{"Data", "data", kData},
};
constexpr std::array kCfop{
    ColunaGuardada{"CFOP", "cfop"},
    ColunaGuardada{"Descrição", "descricao"},
    ColunaGuardada{"ValorContábil", "valor_contabil", kValor},
    ColunaGuardada{"BaseCálculo", "base_calculo", kValor},
    ColunaGuardada{"Imposto", "imposto", kValor},
    ColunaGuardada{"IsentasNãoTrib", "isentas_nao_trib", kValor},
    ColunaGuardada{"Outras", "outras", kValor},
    ColunaGuardada{"ImpostoRetidoST", "imposto_retido_st", kValor},
    ColunaGuardada{"ImpRetSubstitutoST", "imp_ret_substituto_st", kValor},
    ColunaGuardada{"ImpRetSubstituÍdo", "imp_ret_substituido", kValor},
    ColunaGuardada{"OutrosImpostos", "outros_impostos", kValor},
};
constexpr std::array kRegistroCru{ColunaGuardada{"Registro", "registro"}};
constexpr std::array kOcorrencia{
    ColunaGuardada{"CódSubItem", "cod_sub_item"},
    ColunaGuardada{"Valor", "valor", kValor},
    ColunaGuardada{"PrópriaOuST", "propria_ou_st", kInteiro},
    ColunaGuardada{"FLegal", "f_legal"},
    ColunaGuardada{"Ocorrência", "ocorrencia"},
    ColunaGuardada{"Q25", "q25", kInteiro},
    ColunaGuardada{"Q26", "q26", kInteiro},
    ColunaGuardada{"Q27", "q27", kInteiro},
    ColunaGuardada{"Q28", "q28", kInteiro},
};
constexpr std::array kOcorrenciaIE{
    ColunaGuardada{"CódSubItem", "cod_sub_item"},
    ColunaGuardada{"PrópriaOuST", "propria_ou_st", kInteiro},
    ColunaGuardada{"IE", "ie"},
    ColunaGuardada{"Valor", "valor", kValor},
};
constexpr std::array kOcorrenciaSubstituto{
    ColunaGuardada{"CódSubItem", "cod_sub_item"},
    ColunaGuardada{"PrópriaOuST", "propria_ou_st", kInteiro},
    ColunaGuardada{"IESubstituto", "ie_substituto"},
    ColunaGuardada{"NF", "nf", kInteiro},
    ColunaGuardada{"DataInicio", "data_inicio", kMes},
    ColunaGuardada{"DataFim", "data_fim", kMes},
    ColunaGuardada{"Valor", "valor", kValor},
};
constexpr std::array kOcorrenciaSubstituido{
    ColunaGuardada{"CódSubItem", "cod_sub_item"},
    ColunaGuardada{"PrópriaOuST", "propria_ou_st", kInteiro},
    ColunaGuardada{"IESubstituído", "ie_substituido"},
    ColunaGuardada{"NF", "nf", kInteiro},
    ColunaGuardada{"Valor", "valor", kValor},
};
constexpr std::array kOcorrenciaAutorizacao{
    ColunaGuardada{"CódSubItem", "cod_sub_item"},
    ColunaGuardada{"PrópriaOuST", "propria_ou_st", kInteiro},
    ColunaGuardada{"CodAutorizacao", "cod_autorizacao"},
    ColunaGuardada{"Valor", "valor", kValor},
};
constexpr std::array kExportacao{ColunaGuardada{"RE", "re"}};

constexpr std::array<TabelaDeRegistro, kStoredKinds.size()> kTabelas{{
    {Kind::kCr05, "declaracao", {}, kDeclaracao},
    {Kind::kCr07, "pagamento", {}, kPagamento},
    {Kind::kCr10, "cfop", {}, kCfop},
    {Kind::kCr14, "interestadual", Kind::kCr10, kRegistroCru},
    {Kind::kCr18, "zona_franca", Kind::kCr14, kRegistroCru},
    {Kind::kCr20, "ocorrencia", {}, kOcorrencia},
    {Kind::kCr25, "ocorrencia_ie", Kind::kCr20, kOcorrenciaIE},
    {Kind::kCr26, "ocorrencia_substituto", Kind::kCr20, kOcorrenciaSubstituto},
    {Kind::kCr27, "ocorrencia_substituido", Kind::kCr20, kOcorrenciaSubstituido},
    {Kind::kCr28, "ocorrencia_autorizacao", Kind::kCr20, kOcorrenciaAutorizacao},
    {Kind::kCr30, "dipam", {}, kRegistroCru},
    {Kind::kCr31, "exportacao", {}, kExportacao},
}};

// The columns that the record's own fields fill, parted by commas; `tipos` adds their types.
std::string ColunasDosCampos(const TabelaDeRegistro& tabela, bool tipos) {
  std::string colunas;
  for (const ColunaGuardada& coluna : tabela.colunas) {
    colunas.append(",\n  ").append(coluna.nome);
    if (tipos) colunas.append(coluna.forma == kInteiro ? " INTEGER" : " TEXT");
    if (coluna.forma != kValor) continue;
    colunas.append(", ").append(coluna.nome).append("_centavos");
    if (tipos) colunas.append(" INTEGER");
  }
  return colunas;
}

bool Cabecalho(const TabelaDeRegistro& tabela) { return tabela.registro == Kind::kCr05; }

// The header's key, which the store numbers anew.
constexpr std::string_view kImportacao =
    "CREATE TABLE banco.importacao (\n"
    "  id INTEGER PRIMARY KEY,\n"
    "  arquivo TEXT NOT NULL,\n"
    "  importado_em TEXT NOT NULL,\n"
    "  declaracoes INTEGER NOT NULL,\n"
    "  registros INTEGER NOT NULL\n);\n";

std::string CriarTabela(const TabelaDeRegistro& tabela) {
  std::string sql("CREATE TABLE banco.");
  sql.append(tabela.nome).append(" (\n");
  if (Cabecalho(tabela)) {
    sql.append("  id INTEGER PRIMARY KEY,\n  importacao_id INTEGER NOT NULL REFERENCES importacao(id),\n");
    sql.append("  linha INTEGER NOT NULL").append(ColunasDosCampos(tabela, true));
    return sql.append(",\n  UNIQUE (ie, referencia)\n);\n");
  }
  sql.append("  declaracao_id INTEGER NOT NULL REFERENCES declaracao(id),\n  linha INTEGER NOT NULL");
  if (tabela.pai) sql.append(",\n  ").append(ColunaDoPai(tabela)).append(" INTEGER NOT NULL");
  sql.append(ColunasDosCampos(tabela, true)).append(",\n  PRIMARY KEY (declaracao_id, linha)");
  if (tabela.pai) {
    sql.append(",\n  FOREIGN KEY (declaracao_id, ").append(ColunaDoPai(tabela)).append(") REFERENCES ");
    sql.append(TabelaDe(*tabela.pai).nome).append("(declaracao_id, linha)");
  }
  return sql.append("\n) WITHOUT ROWID;\n");
}

}  // namespace

std::span<const TabelaDeRegistro> TabelasDeRegistros() { return kTabelas; }

const TabelaDeRegistro& TabelaDe(Kind registro) {
  const auto* const tabela = std::ranges::find(kTabelas, registro, &TabelaDeRegistro::registro);
  if (tabela == kTabelas.end()) throw RuntimeError(erro::kArgumentoInvalido);
  return *tabela;
}

int ColunasDeChave(const TabelaDeRegistro& tabela) { return tabela.pai ? 3 : 2; }

std::string ColunaDoPai(const TabelaDeRegistro& tabela) {
  return tabela.pai ? std::string(TabelaDe(*tabela.pai).nome).append("_linha") : std::string();
}

std::string EsquemaTemporario() {
  std::string sql;
  for (const TabelaDeRegistro& tabela : kTabelas) {
    sql.append("CREATE TABLE ").append(tabela.nome).append(" (declaracao_id, linha INTEGER PRIMARY KEY");
    if (tabela.pai) sql.append(", ").append(ColunaDoPai(tabela));
    sql.append(ColunasDosCampos(tabela, false)).append(");\n");
  }
  return sql;
}

std::string InsercaoTemporaria(const TabelaDeRegistro& tabela) {
  std::string sql("INSERT INTO ");
  sql.append(tabela.nome).append(" VALUES (?, ?").append(tabela.pai ? ", ?" : "");
  for (const ColunaGuardada& coluna : tabela.colunas)
    sql.append(coluna.forma == kValor ? ", ?, ?" : ", ?");
  return sql.append(")");
}

std::string EsquemaDoBanco() {
  std::string sql(kImportacao);
  for (const TabelaDeRegistro& tabela : kTabelas)
    sql.append(CriarTabela(tabela));
  return sql;
}

std::string Transferencia(const TabelaDeRegistro& tabela) {
  std::string sql("INSERT INTO banco.");
  sql.append(tabela.nome).append(" SELECT declaracao_id + ?1");
  if (Cabecalho(tabela)) sql.append(", ?2");
  sql.append(", linha");
  if (tabela.pai) sql.append(", ").append(ColunaDoPai(tabela));
  return sql.append(ColunasDosCampos(tabela, false)).append(" FROM main.").append(tabela.nome);
}

}  // namespace tremvik
