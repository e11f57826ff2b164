#include "passes/reconciliation.h"

#include <string>
#include <utility>

#include "input/text_reader.h"
#include "layout/kinds.h"
#include "runtime/display.h"
#include "runtime/int16.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

// Where a quantity stands that was announced, its text kept because the line is not.
struct Anuncio {
  int linha = 0;
  std::string_view registro;
  FieldInfo field{};
  ShortText valor;

  [[nodiscard]] FaultLocation Where() const {
    return {linha, registro, field.name, field.position, field.width, valor};
  }
};

// One record read as text: its number in the file and what a short file leaves of it.
struct Linha {
  std::string_view texto;
  int numero = 0;

  template <typename R>
  [[nodiscard]] std::string_view Texto(const Field<R>& field) const {
    return Mid(texto, static_cast<std::size_t>(field.position), static_cast<std::size_t>(field.width));
  }
  template <typename R>
  [[nodiscard]] Anuncio Anuncia(const Field<R>& field) const {
    return {numero, Codigo(R::kKind), {field.name, field.position, field.width}, Texto(field)};
  }
};

// Records counted and announced of one kind since both were last compared; the first mismatch's place is
// kept.
struct Totais {
  double contados = 0;
  double declarados = 0;
  bool marcado = false;
  Anuncio ultimo;
  Anuncio divergente;

  template <typename R>
  void Declarar(const Linha& linha, const Field<R>& quantidade) {
    declarados += Val(linha.Texto(quantidade));
    ultimo = linha.Anuncia(quantidade);
  }
  template <typename R>
  void Contar(const Linha& linha) {
    ++contados;
    if (ultimo.linha == 0) ultimo = linha.Anuncia(R::kCr);  // nothing has announced it
  }
  void Reconciliar() {
    if (contados != declarados && !marcado) {
      marcado = true;
      divergente = ultimo;
    }
    contados = 0;
    declarados = 0;
  }
};

// Export registrations are compared over the whole file only, so one declaration's surplus and another's
// shortfall cancel out; the first declaration that differs is kept as the place all the same.
struct TotaisExportacao {
  std::int16_t declarados = 0;
  double contados = 0;
  Totais declaracao;

  void Declarar(const Linha& linha) {
    declaracao.Reconciliar();
    declaracao.Declarar(linha, Cr05::kQ31);
    declarados = ToInt16(declarados + Val(linha.Texto(Cr05::kQ31)));
  }
  void Contar(const Linha& linha) {
    declaracao.Contar<Cr31>(linha);
    ++contados;
  }
  void Reconciliar() {
    declaracao.Reconciliar();
    declaracao.marcado = contados != declarados;
  }
};

class Contagem {
 public:
  // Master records read so far.
  [[nodiscard]] int mestres() const { return mestres_; }

  void Contar(Kind kind, const Linha& linha);
  void ReconciliarTudo();
  // The messages of the kinds that differ, each ended by CR LF; tells the places to `diagnostics`.
  std::string Divergencias(Diagnostics& diagnostics) const;

 private:
  void ContarCabecalho(const Linha& linha);
  void ContarOcorrencia(const Linha& linha);

  int mestres_ = 0;
  Totais cr05_, cr07_, cr10_, cr14_, cr18_, cr20_, cr25_, cr26_, cr27_, cr28_, cr30_;
  TotaisExportacao cr31_;
};

void Contagem::Contar(Kind kind, const Linha& linha) {
  switch (kind) {
    case Kind::kCr01:
      ++mestres_;
      if (mestres_ == 1) cr05_.Declarar(linha, Cr01::kQ05);
      return;
    case Kind::kCr05:
      return ContarCabecalho(linha);
    case Kind::kCr07:
      return cr07_.Contar<Cr07>(linha);
    case Kind::kCr10:
      cr14_.Reconciliar();
      cr10_.Contar<Cr10>(linha);
      return cr14_.Declarar(linha, Cr10::kQ14);
    case Kind::kCr14:
      cr18_.Reconciliar();
      cr14_.Contar<Cr14>(linha);
      return cr18_.Declarar(linha, Cr14::kQ18);
    case Kind::kCr18:
      return cr18_.Contar<Cr18>(linha);
    case Kind::kCr20:
      return ContarOcorrencia(linha);
    case Kind::kCr25:
      return cr25_.Contar<Cr25>(linha);
    case Kind::kCr26:
      return cr26_.Contar<Cr26>(linha);
    case Kind::kCr27:
      return cr27_.Contar<Cr27>(linha);
    case Kind::kCr28:
      return cr28_.Contar<Cr28>(linha);
    case Kind::kCr30:
      return cr30_.Contar<Cr30>(linha);
    case Kind::kCr31:
      return cr31_.Contar(linha);
  }
}

void Contagem::ContarCabecalho(const Linha& linha) {
  cr07_.Reconciliar();
  cr10_.Reconciliar();
  cr20_.Reconciliar();
  cr30_.Reconciliar();
  cr05_.Contar<Cr05>(linha);
  cr07_.Declarar(linha, Cr05::kQ07);
  cr10_.Declarar(linha, Cr05::kQ10);
  cr20_.Declarar(linha, Cr05::kQ20);
  cr30_.Declarar(linha, Cr05::kQ30);
  cr31_.Declarar(linha);
}

void Contagem::ContarOcorrencia(const Linha& linha) {
  cr25_.Reconciliar();
  cr26_.Reconciliar();
  cr27_.Reconciliar();
  cr28_.Reconciliar();
  cr20_.Contar<Cr20>(linha);
  cr25_.Declarar(linha, Cr20::kQ25);
  cr26_.Declarar(linha, Cr20::kQ26);
  cr27_.Declarar(linha, Cr20::kQ27);
  cr28_.Declarar(linha, Cr20::kQ28);
}

void Contagem::ReconciliarTudo() {
  for (Totais* const totais :
       {&cr05_, &cr07_, &cr10_, &cr14_, &cr18_, &cr20_, &cr25_, &cr26_, &cr27_, &cr28_, &cr30_}) {
    totais->Reconciliar();
  }
  cr31_.Reconciliar();
}

std::string Contagem::Divergencias(Diagnostics& diagnostics) const {
  const std::pair<std::string_view, const Totais*> tipos[] = {
      {"05", &cr05_}, {"07", &cr07_}, {"10", &cr10_}, {"14", &cr14_},
      {"18", &cr18_}, {"20", &cr20_}, {"25", &cr25_}, {"26", &cr26_},
      {"27", &cr27_}, {"28", &cr28_}, {"30", &cr30_}, {"31", &cr31_.declaracao}};
  std::string texto;
  for (const auto& [code, totais] : tipos) {
    if (!totais->marcado) continue;
    diagnostics.Inconsistencia(totais->divergente.Where());
    texto.append("Quantidade de registros CR=")
        .append(code)
        .append(" informado diverge do apurado.")
        .append(kCrLf);
  }
  return texto;
}

// Reads one record: its code, then as many characters as the kind's content length, which takes the rest of
// it and its separators. Of an unknown code nothing more is read. The text is valid until the next record;
// one that is not a line of its kind's length is put together in `partes`.
std::string_view LerRegistro(TextReader& reader, std::string& partes) {
  if (const KindInfo* const kind = FindKind(Left(reader.Ahead(), 2))) {
    const std::string_view linha = reader.TakeLine(static_cast<std::size_t>(kind->length));
    if (!linha.empty()) return linha;
  }
  partes.clear();
  reader.ReadCharacters(2, partes);
  const KindInfo* const kind = FindKind(partes);
  if (kind != nullptr) reader.ReadCharacters(static_cast<std::size_t>(kind->length), partes);
  return partes;
}

}  // namespace

bool CompararTotais(std::string_view path, const ReconciliationHost& host, std::uint8_t& NumeroArquivoTexto,
                    std::int16_t& NumeroLinha) {
  host.events.Progresso();
  NumeroArquivoTexto = ToByte(host.files.FreeFile());
  TextReader reader(host.files, NumeroArquivoTexto, path);
  Contagem contagem;
  Linha linha;
  std::string partes;
  while (!reader.AtEnd()) {
    linha.texto = LerRegistro(reader, partes);
    Increment(NumeroLinha);
    ++linha.numero;
    const KindInfo* const kind = KindOfNumber(IntVal(Left(linha.texto, 2)));
    if (kind == nullptr) {
      const std::string code(Left(linha.texto, 2));
      host.erro_sair(
          {"CR = " + Utf8(code) + " Inconsistente, Posição 1", {}, {linha.numero, "", "CR", 1, 2, code}});
      reader.Close();
      return true;
    }
    contagem.Contar(kind->kind, linha);
    if (contagem.mestres() > 1) {
      host.diagnostics.Inconsistencia(linha.Anuncia(Cr01::kCr).Where());
      host.screen.MsgBox("Informado mais de um Registro mestre CR=01", estilo::kCritico, "Atenção");
      reader.Close();
      return true;
    }
  }
  reader.Close();
  contagem.ReconciliarTudo();
  const std::string divergencias = contagem.Divergencias(host.diagnostics);
  if (!divergencias.empty()) host.screen.MsgBox(divergencias, estilo::kCritico, "Atenção");
  host.events.Progresso();
  return !divergencias.empty();
}

}  // namespace tremvik
