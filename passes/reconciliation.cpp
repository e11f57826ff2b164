#include "passes/reconciliation.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "layout/kinds.h"
#include "passes/whole_line.h"
#include "runtime/int16.h"
#include "runtime/numbers.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

using Achado = Reconciliation::Achado;

// The rules that compare the counts, one for each stored kind.
constexpr std::array<RuleCode, kStoredKinds.size()> kRegras{"ARQ-06", "ARQ-07", "ARQ-08", "ARQ-09",
                                                            "ARQ-10", "ARQ-11", "ARQ-12", "ARQ-13",
                                                            "ARQ-14", "ARQ-15", "ARQ-16", "ARQ-17"};

std::string Comparados(double declarados, double contados) {
  const auto number = [](double count) { return std::to_string(static_cast<long>(count)); };
  return "informados: " + number(declarados) + "; encontrados: " + number(contados);
}

// One record read as text: its number in the file and what a short file leaves of it.
struct Linha {
  std::string_view texto;
  int numero = 0;
  const KindInfo* kind = nullptr;

  [[nodiscard]] std::string_view Texto(const FieldInfo& field) const {
    return Mid(texto, static_cast<std::size_t>(field.position), static_cast<std::size_t>(field.width));
  }
};

// Where something was announced, or stands unannounced. It is kept of each record, so it allocates nothing.
class Announcement {
 public:
  Announcement() = default;
  Announcement(const Linha& linha, const FieldInfo& field)
      : linha_(linha.numero), kind_(linha.kind), field_(&field) {
    size_ = linha.Texto(field).copy(text_.data(), text_.size());
  }

  [[nodiscard]] bool made() const { return kind_ != nullptr; }
  [[nodiscard]] Place Where() const {
    return {linha_, kind_->code, *field_, std::string(text_.data(), size_)};
  }

 private:
  int linha_ = 0;
  const KindInfo* kind_ = nullptr;
  const FieldInfo* field_ = nullptr;
  std::array<char, 4> text_{};  // as wide as any quantity
  std::size_t size_ = 0;
};
static_assert(std::ranges::all_of(kKinds, [](const KindInfo& kind) { return kind.quantity.width <= 4; }));

// Records counted and announced of one kind since both were last compared; the first mismatch's place is
// kept.
struct Totais {
  double contados = 0;
  double declarados = 0;
  bool marcado = false;
  Announcement ultimo;
  Announcement divergente;
  std::string porque;

  void Declarar(const Linha& linha, const FieldInfo& quantidade) {
    declarados += Val(linha.Texto(quantidade));
    ultimo = {linha, quantidade};
  }
  void Contar(const Linha& linha) {
    ++contados;
    if (!ultimo.made()) ultimo = {linha, linha.kind->fields.front()};  // nothing has announced it
  }
  void Reconciliar() {
    if (contados != declarados && !marcado) {
      marcado = true;
      divergente = ultimo;
      porque = Comparados(declarados, contados);
    }
    contados = 0;
    declarados = 0;
  }
};

// Export registrations are compared over the whole file only, so one declaration's surplus and another's
// shortfall cancel out; the place told is that of the first declaration that differs all the same.
struct TotaisDoArquivo {
  std::int16_t declarados = 0;
  double contados = 0;
};

class Contagem {
 public:
  [[nodiscard]] double mestres() const { return totais_[Kind::kCr01].contados; }

  void Contar(const Linha& linha);
  void ReconciliarTudo();
  [[nodiscard]] Reconciliation Divergencias() const;

 private:
  ByKind<Totais> totais_;
  TotaisDoArquivo exportacoes_;
};

// A record of a parent's kind ends the children of the one before it; what the master record announces is
// compared at the end of the file.
void Contagem::Contar(const Linha& linha) {
  const Kind kind = linha.kind->kind;
  const auto children = ChildrenOf(kind);
  if (kind != Kind::kCr01) {
    for (const Kind child : children)
      totais_[child].Reconciliar();
  }
  totais_[kind].Contar(linha);
  for (const Kind child : children)
    totais_[child].Declarar(linha, InfoOf(child).quantity);
  if (kind == Kind::kCr05) {
    exportacoes_.declarados =
        ToInt16(exportacoes_.declarados + Val(linha.Texto(InfoOf(Kind::kCr31).quantity)));
  }
  if (kind == Kind::kCr31) ++exportacoes_.contados;
}

void Contagem::ReconciliarTudo() {
  for (const Kind kind : kStoredKinds)
    totais_[kind].Reconciliar();
  Totais& exportacoes = totais_[Kind::kCr31];
  exportacoes.marcado = exportacoes_.contados != exportacoes_.declarados;
  exportacoes.porque = "no arquivo inteiro, " + Comparados(exportacoes_.declarados, exportacoes_.contados);
}

Reconciliation Contagem::Divergencias() const {
  Reconciliation found;
  for (std::size_t i = 0; i < kStoredKinds.size(); ++i) {
    const Totais& totais = totais_[kStoredKinds[i]];
    if (!totais.marcado) continue;
    found.achado = Achado::kDiverge;
    found.faults.push_back({kRegras[i],
                            std::string("Quantidade de registros CR=")
                                .append(Codigo(kStoredKinds[i]))
                                .append(" informado diverge do apurado."),
                            totais.divergente.Where(), totais.porque});
  }
  return found;
}

// Reads one record: its code, then as many characters as the kind's content length, which takes the rest of
// it and its separators. Of an unknown code nothing more is read. The text is valid until the next record;
// one that is not a line of its kind's length is put together in `partes`.
std::string_view LerRegistro(TextReader& reader, std::string& partes) {
  const std::string_view linha = TakeWholeLine(reader);
  if (!linha.empty()) return linha;
  partes.clear();
  reader.ReadCharacters(2, partes);
  const KindInfo* const kind = FindKind(partes);
  if (kind != nullptr) reader.ReadCharacters(static_cast<std::size_t>(kind->length), partes);
  return partes;
}

}  // namespace

Reconciliation CompararTotais(TextReader& arquivo, std::int16_t& NumeroLinha) {
  Contagem contagem;
  Linha linha;
  std::string partes;
  while (!arquivo.AtEnd()) {
    linha.texto = LerRegistro(arquivo, partes);
    Increment(NumeroLinha);
    ++linha.numero;
    const std::string_view codigo = Left(linha.texto, 2);
    linha.kind = KindOfNumber(IntVal(codigo));
    if (linha.kind == nullptr) {
      return {Achado::kCodigoDesconhecido,
              {{"ARQ-05",
                "CR = " + Utf8(codigo) + " Inconsistente, Posição 1",
                {linha.numero, "", {"CR", 1, 2}, std::string(codigo)}}}};
    }
    contagem.Contar(linha);
    if (contagem.mestres() > 1) {
      return {Achado::kSegundoMestre,
              {{"ARQ-04", "Informado mais de um Registro mestre CR=01",
                Announcement(linha, linha.kind->fields.front()).Where()}}};
    }
  }
  contagem.ReconciliarTudo();
  return contagem.Divergencias();
}

}  // namespace tremvik
