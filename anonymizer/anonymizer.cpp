#include "anonymizer/anonymizer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "anonymizer/amounts.h"
#include "anonymizer/occurrence.h"
#include "anonymizer/order_map.h"
#include "examination/causes.h"
#include "examination/lines.h"
#include "runtime/display.h"
#include "runtime/numbers.h"
#include "sample/draw.h"

namespace tremvik::anonymizer {
namespace {

constexpr std::size_t kCode = 2;  // what names a record's kind stays
constexpr int kAttempts = 100;

bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

std::string WithoutWords(std::string_view text, std::uint64_t seed) {
  std::string out = OtherDigits(text, seed);
  for (char& c : out) {
    if (IsLetter(c)) c = c < 'a' ? 'X' : 'x';
  }
  return out;
}

// The digits of base 16 drawn anew, zeros as zeros.
std::string OtherKey(std::string_view key, std::uint64_t seed) {
  std::string out = OtherDigits(key, seed);
  sample::Draw draw(Mixed(seed, key));
  for (char& c : out) {
    if (c >= 'a' && c <= 'f') c = draw.Between('a', 'f');
    if (c >= 'A' && c <= 'F') c = draw.Between('A', 'F');
  }
  return out;
}

// A line: its bytes, and where they stand in the file.
struct Entry {
  std::string_view content;
  std::size_t at = 0;
  const KindInfo* kind = nullptr;   ///< null where the length is not that of its kind, too
  const KindInfo* named = nullptr;  ///< the same whatever its length

  template <typename R>
  [[nodiscard]] std::string_view operator[](const Field<R>& field) const {
    return content.substr(static_cast<std::size_t>(field.position) - 1,
                          static_cast<std::size_t>(field.width));
  }
  [[nodiscard]] bool Is(Kind wanted) const { return kind != nullptr && kind->kind == wanted; }
};

// The amount of an occurrence's detail.
std::string_view ValorOf(const Entry& detail) {
  if (detail.Is(Kind::kCr25)) return detail[Cr25::kValor];
  if (detail.Is(Kind::kCr26)) return detail[Cr26::kValor];
  return detail.Is(Kind::kCr27) ? detail[Cr27::kValor] : detail[Cr28::kValor];
}

// The registrations and ordered numbers of all records.
struct Keys {
  std::set<std::string> ies;
  std::set<std::string> notas;
  std::set<std::string> res;
};
Keys KeysOf(const std::vector<Entry>& entries) {
  Keys keys;
  for (const Entry& entry : entries) {
    if (entry.Is(Kind::kCr05)) keys.ies.emplace(entry[Cr05::kIE]);
    if (entry.Is(Kind::kCr25)) keys.ies.emplace(entry[Cr25::kIE]);
    if (entry.Is(Kind::kCr26)) keys.ies.emplace(entry[Cr26::kIESubstituto]);
    if (entry.Is(Kind::kCr27)) keys.ies.emplace(entry[Cr27::kIESubstituido]);
    if (entry.Is(Kind::kCr26)) keys.notas.emplace(entry[Cr26::kNF]);
    if (entry.Is(Kind::kCr27)) keys.notas.emplace(entry[Cr27::kNF]);
    if (entry.Is(Kind::kCr31)) keys.res.emplace(entry[Cr31::kRE]);
  }
  return keys;
}

// Writes the records' places over a copy of the file.
class Writer {
 public:
  Writer(std::string_view bytes, std::uint64_t seed)
      : seed_(seed),
        draw_(seed),
        out_(bytes),
        entries_(EntriesOf(bytes)),
        keys_(KeysOf(entries_)),
        registrations_(keys_.ies, seed),
        notas_(keys_.notas, draw_),
        res_(keys_.res, draw_) {}

  Anonymized Write() {
    bool known = entries_.empty();
    owned_.resize(entries_.size());
    for (std::size_t i = 0; i < entries_.size(); ++i) {
      known = known || entries_[i].named != nullptr;
      WriteEntry(i);
    }
    return {std::move(out_), std::move(registrations_), known};
  }

 private:
  static std::vector<Entry> EntriesOf(std::string_view bytes) {
    std::vector<Entry> entries;
    for (const Line& line : SplitLines(bytes, std::numeric_limits<std::size_t>::max())) {
      const KindInfo* const named = KindOf(line.content);
      const bool whole = named != nullptr && line.content.size() == static_cast<std::size_t>(named->length);
      entries.push_back({line.content, static_cast<std::size_t>(line.content.data() - bytes.data()),
                         whole ? named : nullptr, named});
    }
    return entries;
  }

  template <typename R>
  void Set(const Entry& entry, const Field<R>& field, std::string_view text) {
    out_.replace(entry.at + static_cast<std::size_t>(field.position) - 1, text.size(), text);
  }
  // `field` is a part of the entry's content.
  void Overwrite(const Entry& entry, std::string_view field, std::string_view text) {
    out_.replace(entry.at + static_cast<std::size_t>(field.data() - entry.content.data()), field.size(),
                 text);
  }
  [[nodiscard]] std::uint64_t SeedOf(const Entry& entry) const { return Mixed(seed_, entry.content); }

  void WriteEntry(std::size_t index);
  void WriteStranger(const Entry& entry);
  void WriteHeader(const Entry& entry);
  void WriteCfop(const Entry& entry);
  void WriteOccurrence(std::size_t index);
  void WriteOrphan(const Entry& entry);
  [[nodiscard]] std::vector<std::size_t> DetailsOf(std::size_t index) const;

  std::uint64_t seed_;
  sample::Draw draw_;
  std::string out_;
  std::vector<Entry> entries_;
  Keys keys_;
  Registrations registrations_;
  OrderMap notas_;
  OrderMap res_;
  Taxpayer taxpayer_;                  ///< of the last header
  std::vector<std::size_t> repeated_;  ///< the last occurrences, all alike
  std::size_t teller_ = 0;             ///< the one of them that the others follow
  std::vector<bool> owned_;            ///< details of an occurrence
};

void Writer::WriteEntry(std::size_t index) {
  const Entry& entry = entries_[index];
  if (entry.kind == nullptr) return WriteStranger(entry);
  if (entry.kind->parent == Kind::kCr20 && !owned_[index]) WriteOrphan(entry);
  sample::Draw draw(SeedOf(entry));
  const auto digits = [&](const auto& field) { Set(entry, field, OtherDigits(entry[field], SeedOf(entry))); };
  switch (entry.kind->kind) {
    case Kind::kCr01:
      return;
    case Kind::kCr05:
      return WriteHeader(entry);
    case Kind::kCr07:
      return Set(entry, Cr07::kValor, OtherAmountField(entry[Cr07::kValor], draw));
    case Kind::kCr10:
      return WriteCfop(entry);
    case Kind::kCr14:
      return digits(Cr14::kConteudo);
    case Kind::kCr18:
      return digits(Cr18::kConteudo);
    case Kind::kCr20:
      return WriteOccurrence(index);
    case Kind::kCr25:
      return Set(entry, Cr25::kIE, registrations_.IE(entry[Cr25::kIE]));
    case Kind::kCr26:
      Set(entry, Cr26::kIESubstituto, registrations_.IE(entry[Cr26::kIESubstituto]));
      return Set(entry, Cr26::kNF, notas_[entry[Cr26::kNF]]);
    case Kind::kCr27:
      Set(entry, Cr27::kIESubstituido, registrations_.IE(entry[Cr27::kIESubstituido]));
      return Set(entry, Cr27::kNF, notas_[entry[Cr27::kNF]]);
    case Kind::kCr28:
      break;
    case Kind::kCr30:
      return digits(Cr30::kConteudo);
    case Kind::kCr31:
      return Set(entry, Cr31::kRE, res_[entry[Cr31::kRE]]);
  }
}

// A line without a kind or of a wrong length: nobody knows what stands where.
void Writer::WriteStranger(const Entry& entry) {
  const std::string_view rest = entry.content.substr(std::min(kCode, entry.content.size()));
  out_.replace(entry.at + entry.content.size() - rest.size(), rest.size(), WithoutWords(rest, SeedOf(entry)));
}

void Writer::WriteHeader(const Entry& entry) {
  using C = Cr05;
  sample::Draw draw(SeedOf(entry));
  taxpayer_ = {entry[C::kIE], registrations_.IE(entry[C::kIE])};
  Set(entry, C::kIE, taxpayer_.now);
  Set(entry, C::kCNPJ, registrations_.CNPJ(entry[C::kCNPJ]));
  for (const auto& field : {C::kSaldoCredPeriodoAnt, C::kSaldoCredPeriodoAntST, C::kICMSFixPer})
    Set(entry, field, OtherAmountField(entry[field], draw));
  Set(entry, C::kSemRegra, OtherDigits(entry[C::kSemRegra], seed_));
  Set(entry, C::kChaveInterna, OtherKey(entry[C::kChaveInterna], seed_));
}

// The amount and the code of a detail that no occurrence has.
void Writer::WriteOrphan(const Entry& entry) {
  const std::string_view valor = ValorOf(entry);
  sample::Draw draw(SeedOf(entry));
  Overwrite(entry, valor, OtherAmountField(valor, draw));
  if (entry.Is(Kind::kCr28))
    Set(entry, Cr28::kCodAutorizacao, WithoutWords(entry[Cr28::kCodAutorizacao], seed_));
}

// True when the import asks about a tax above a quarter of its base.
bool Asks(std::string_view base, std::string_view imposto) {
  return imposto > QuinzeDigitos(Val(base) * 0.25).view();
}

// The tax keeps its part of the base, and the first amount its sum.
void Writer::WriteCfop(const Entry& entry) {
  using C = Cr10;
  sample::Draw draw(SeedOf(entry));
  for (const auto& field : {C::kValorContabil, C::kIsentasNaoTrib, C::kOutras, C::kImpostoRetidoST,
                            C::kImpRetSubstitutoST, C::kImpRetSubstituido, C::kOutrosImpostos}) {
    Set(entry, field, OtherAmountField(entry[field], draw));
  }
  const std::string_view base = entry[C::kBaseCalculo];
  const std::string_view imposto = entry[C::kImposto];
  const auto amount = PlainAmount(imposto);
  for (int i = 0; i < kAttempts; ++i) {
    const std::string other_base = OtherAmountField(base, draw);
    std::string other = OtherAmountField(imposto, draw);
    if (amount && *amount > 0 && Val(base) > 0) {
      const std::int64_t part = std::llround(static_cast<double>(*amount) * Val(other_base) / Val(base));
      other = Written(std::max<std::int64_t>(part, 1), imposto).value_or(other);
    }
    if (Asks(base, imposto) != Asks(other_base, other)) continue;
    Set(entry, C::kBaseCalculo, other_base);
    Set(entry, C::kImposto, other);
    break;
  }
  const auto sum = [&](std::string_view content) {
    const Entry of{content, 0, entry.kind, entry.named};
    return Val(of[C::kBaseCalculo]) + Val(of[C::kIsentasNaoTrib]) + Val(of[C::kOutras]);
  };
  if (!PlainAmount(entry[C::kValorContabil]) || Val(entry[C::kValorContabil]) != sum(entry.content)) return;
  const double now = sum(std::string_view(out_).substr(entry.at, entry.content.size()));
  if (const auto written = Written(static_cast<std::int64_t>(now), entry[C::kValorContabil]))
    Set(entry, C::kValorContabil, *written);
}

// The details behind the occurrence `index`, also those that a record of another kind parts from it.
std::vector<std::size_t> Writer::DetailsOf(std::size_t index) const {
  constexpr std::array kEnds{Kind::kCr20, Kind::kCr05, Kind::kCr01};
  std::vector<std::size_t> details;
  for (std::size_t i = index + 1; i < entries_.size(); ++i) {
    const Entry& entry = entries_[i];
    const bool ends = entry.named != nullptr && std::ranges::count(kEnds, entry.named->kind) > 0;
    if (ends) break;
    if (entry.kind != nullptr && entry.kind->parent == Kind::kCr20) details.push_back(i);
  }
  return details;
}

void Writer::WriteOccurrence(std::size_t index) {
  using C = Cr20;
  const Entry& entry = entries_[index];
  const std::vector<std::size_t> indexes = DetailsOf(index);
  Occurrence occurrence{entry.content, entry[C::kValor], entry[C::kCodSubItem], {}};
  for (const std::size_t i : indexes) {
    const Entry& detail = entries_[i];
    occurrence.details.push_back(
        {detail.content, ValorOf(detail),
         detail.Is(Kind::kCr28) ? detail[Cr28::kCodAutorizacao] : std::string_view()});
  }
  const OtherOccurrence other = Replace(occurrence, taxpayer_, seed_);
  Set(entry, C::kValor, other.valor);
  for (const auto& field : {C::kFLegal, C::kOcorrencia})
    Set(entry, field, WithoutWords(entry[field], seed_));
  for (std::size_t i = 0; i < indexes.size(); ++i) {
    const Entry& detail = entries_[indexes[i]];
    owned_[indexes[i]] = true;
    Overwrite(detail, ValorOf(detail), other.details[i].valor);
    if (detail.Is(Kind::kCr28)) Set(detail, Cr28::kCodAutorizacao, other.details[i].codigo);
  }
  // Occurrences that repeat the one before are told by that, so all stay equal: as one with details has it.
  if (repeated_.empty() || entries_[repeated_.front()].content != entry.content) repeated_.clear();
  if (repeated_.empty() || !indexes.empty()) teller_ = index;
  repeated_.push_back(index);
  const std::string told = out_.substr(entries_[teller_].at, entry.content.size());
  for (const std::size_t i : repeated_)
    out_.replace(entries_[i].at, told.size(), told);
}

bool IsAlphanumeric(char c) { return IsDigit(c) || IsLetter(c); }

// `now`, which stands for `before`, in the encoding of `bytes`, of which `before` is the reading; none where
// they have not the same digits and letters in the same order.
std::optional<std::string> Encoded(std::string_view bytes, std::string_view before, std::string_view now) {
  std::string out(bytes);
  std::size_t at = 0;
  for (std::size_t i = 0; i < before.size(); ++i) {
    if (!IsAlphanumeric(before[i])) continue;
    while (at < out.size() && !IsAlphanumeric(out[at]))
      ++at;
    if (at == out.size() || out[at] != before[i]) return {};
    out[at++] = now[i];
  }
  return out;
}

}  // namespace

Anonymized Anonymize(std::string_view bytes, std::uint64_t seed) {
  std::string read(bytes);
  bool readable = true;
  for (auto cause = FindCause(read); cause; cause = FindCause(read)) {
    readable = cause->repaired.has_value();
    if (!readable) break;
    read = std::move(*cause->repaired);
  }
  Anonymized result = readable ? Writer(read, seed).Write() : Anonymized{{}, Registrations({}, seed), false};
  if (result.known && read == bytes) return result;
  auto encoded = result.known ? Encoded(bytes, read, result.bytes) : std::nullopt;
  result.known = encoded.has_value();
  result.bytes = encoded ? std::move(*encoded) : WithoutWords(bytes, seed);
  return result;
}

std::uint64_t AnySeed() {
  std::random_device device;
  const std::uint64_t high = device();
  return high << 32U | device();
}

}  // namespace tremvik::anonymizer
