#include "adapters/sqlite/table_writer.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "runtime/numbers.h"

namespace tremvik {
namespace {

// More than any record's texts, so that neither buffer grows and moves while a statement refers to it.
constexpr std::size_t kTextos = 4096;
constexpr std::size_t kMaisAlgarismos = 18;

std::optional<std::int64_t> Inteiro(std::string_view texto) {
  if (!OnlyDigits(texto) || texto.size() > kMaisAlgarismos) return std::nullopt;
  std::int64_t valor = 0;
  std::from_chars(texto.data(), texto.data() + texto.size(), valor);
  return valor;
}

// "1.234,56" as 123456.
std::optional<std::int64_t> Centavos(std::string_view texto) {
  const bool negativo = texto.starts_with('-');
  if (negativo) texto.remove_prefix(1);
  const auto virgula = texto.find(',');
  if (virgula == std::string_view::npos || texto.size() != virgula + 3) return std::nullopt;
  std::int64_t valor = 0;
  std::size_t algarismos = 0;
  for (const char c : texto) {
    if (c == '.' || c == ',') continue;
    if (!IsDigit(c) || ++algarismos > kMaisAlgarismos) return std::nullopt;
    valor = valor * 10 + (c - '0');
  }
  return negativo ? -valor : valor;
}

// The ISO form of a date or month, appended to `formados`; the text itself where it has not the form.
std::string_view Iso(Forma forma, std::string_view texto, std::string& formados) {
  const std::size_t inicio = formados.size();
  const auto parte = [&](std::size_t de, std::size_t tamanho) { return texto.substr(de, tamanho); };
  const auto barras = [&](std::size_t primeira, std::size_t segunda) {
    return texto.size() == 10 && texto[primeira] == '/' && texto[segunda] == '/';
  };
  if (forma == Forma::kData && barras(4, 7)) {
    formados.append(parte(0, 4)).append("-").append(parte(5, 2)).append("-").append(parte(8, 2));
  } else if (forma == Forma::kMes && barras(2, 5)) {
    formados.append(parte(6, 4)).append("-").append(parte(3, 2));
  } else if (forma == Forma::kPeriodo && texto.size() == 6 && OnlyDigits(texto)) {
    formados.append(parte(0, 4)).append("-").append(parte(4, 2));
  } else {
    return texto;
  }
  return std::string_view{formados}.substr(inicio);
}

bool SoZeros(std::string_view texto) { return texto.find_first_not_of('0') == std::string_view::npos; }

}  // namespace

TableWriter::TableWriter(TemporaryDatabase& temporario, Kind registro)
    : temporario_(temporario), tabela_(TabelaDe(registro)), lugares_(tabela_.colunas.size()) {
  textos_.reserve(kTextos);
  formados_.reserve(kTextos);
}

void TableWriter::Campo(std::string_view nome, std::string_view texto) {
  const std::size_t colunas = tabela_.colunas.size();
  // Fields come in the columns' order, so the first look is usually right.
  std::size_t coluna = proxima_ % colunas;
  for (std::size_t i = 0; i < colunas && tabela_.colunas[coluna].campo != nome; ++i) {
    coluna = (coluna + 1) % colunas;
  }
  if (tabela_.colunas[coluna].campo != nome || lugares_[coluna].dado) {
    Limpar();
    throw RuntimeError(erro::kArgumentoInvalido,
                       std::string("Campo desconhecido ou repetido: '").append(nome).append("'."));
  }
  lugares_[coluna] = {textos_.size(), texto.size(), true};
  textos_.append(texto);
  proxima_ = coluna + 1;
}

void TableWriter::Vincular(sqlite::Statement& insercao, int parametro, Forma forma, std::string_view texto) {
  if (forma == Forma::kValor) {
    insercao.Bind(parametro, texto);
    const auto centavos = Centavos(texto);
    centavos ? insercao.Bind(parametro + 1, *centavos) : insercao.BindNull(parametro + 1);
    return;
  }
  if (const auto inteiro = forma == Forma::kInteiro ? Inteiro(texto) : std::nullopt) {
    insercao.Bind(parametro, *inteiro);
    return;
  }
  if (forma == Forma::kPeriodo && SoZeros(texto)) {
    insercao.BindNull(parametro);
    return;
  }
  insercao.Bind(parametro, Iso(forma, texto, formados_));
}

void TableWriter::VincularCampos(sqlite::Statement& insercao) {
  int parametro = ColunasDeChave(tabela_) + 1;
  for (std::size_t i = 0; i < lugares_.size(); ++i) {
    const Lugar& lugar = lugares_[i];
    const Forma forma = tabela_.colunas[i].forma;
    const int depois = parametro + (forma == Forma::kValor ? 2 : 1);
    if (lugar.dado) {
      Vincular(insercao, parametro, forma, std::string_view{textos_}.substr(lugar.inicio, lugar.tamanho));
    } else {
      for (int p = parametro; p < depois; ++p)
        insercao.BindNull(p);
    }
    parametro = depois;
  }
}

void TableWriter::Gravar() {
  try {
    sqlite::Statement& insercao = temporario_.Insercao(tabela_.registro);
    const ChaveDeRegistro chave = temporario_.NovaChave(tabela_.registro);
    insercao.Bind(1, chave.declaracao).Bind(2, chave.linha);
    if (tabela_.pai) insercao.Bind(3, chave.pai);
    VincularCampos(insercao);
    insercao.Run();
  } catch (const RuntimeError&) {
    Limpar();
    throw;
  }
  Limpar();
}

void TableWriter::Limpar() {
  textos_.clear();
  formados_.clear();
  std::ranges::fill(lugares_, Lugar{});
  proxima_ = 0;
}

}  // namespace tremvik
