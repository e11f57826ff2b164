#include "sample/file_builder.h"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>
#include <utility>

#include "adapters/local/documents.h"
#include "runtime/text.h"

namespace tremvik::sample {
namespace {

// What a new record holds. Every "@" run stands for its number among its kind under the same parent, "IE" for
// a registration of that number.
struct Defaults {
  Kind kind;
  std::string_view values;
};
constexpr std::array kDefaults{
    Defaults{Kind::kCr01, "TipoDocto=01; DataGeração=20120401; HoraGeração=101500; VersãoPref=0210"},
    Defaults{Kind::kCr05, "IE=IE; CNPJ=12345678000195; RegTrib=01; Ref=201203"},
    Defaults{Kind::kCr07, "Valor=12345; Data=201203@@"},
    Defaults{Kind::kCr10, "CFOP=11@@00; ValorContábil=123456789"},
    Defaults{Kind::kCr20, "CódSubItem=003@@; Valor=100; FLegal=; Ocorrência="},
    Defaults{Kind::kCr25, "IE=IE; Valor=100"},
    Defaults{Kind::kCr26, "IESubstituto=IE; NF=1; DataInicio=201201; DataFim=201202; Valor=100"},
    Defaults{Kind::kCr27, "IESubstituído=IE; NF=1; Valor=100"},
    Defaults{Kind::kCr28, "CodAutorizacao=100dubl000@@; Valor=100"},
    Defaults{Kind::kCr30, "Conteúdo=@@"},
    Defaults{Kind::kCr31, "RE=@@@@@"},
};

// What an occurrence owes to its details: a sub-item that has them.
constexpr std::array kOwed{
    Defaults{Kind::kCr25, "CódSubItem=00730"},
    Defaults{Kind::kCr26, "CódSubItem=00210"},
    Defaults{Kind::kCr27, "CódSubItem=00701; PrópriaOuST=1"},
    Defaults{Kind::kCr28, "CódSubItem=00220"},
};

std::pair<std::string_view, std::string_view> Cut(std::string_view text, char separator) {
  const auto at = text.find(separator);
  if (at == std::string_view::npos) return {text, {}};
  return {text.substr(0, at), text.substr(at + 1)};
}

int Number(std::string_view digits) { return std::stoi(std::string(digits)); }

std::string Numbered(std::string_view text, int ordinal) {
  if (text == "IE") {
    const std::string order = std::to_string(10 + ordinal % 90);
    return CompletarIE(std::to_string(11004249 + ordinal / 90), order);
  }
  std::string result(text);
  for (auto i = result.rfind('@'); i != std::string::npos; i = result.rfind('@')) {
    result[i] = static_cast<char>('0' + ordinal % 10);
    ordinal /= 10;
  }
  return result;
}

const KindInfo& KindNamed(std::string_view code) {
  const KindInfo* const kind = FindKind(code);
  if (kind == nullptr) throw std::logic_error("no such record: " + std::string(code));
  return *kind;
}

}  // namespace

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> pieces;
  while (!text.empty()) {
    auto [piece, rest] = Cut(text, separator);
    piece.remove_prefix(std::min(piece.find_first_not_of(' '), piece.size()));
    if (!piece.empty()) pieces.push_back(piece);
    text = rest;
  }
  return pieces;
}

std::string WithBytes(std::string_view text) {
  std::string bytes(text);
  for (auto at = bytes.find("\\x"); at != std::string::npos; at = bytes.find("\\x", at + 1))
    bytes.replace(at, 4, 1, static_cast<char>(std::stoi(bytes.substr(at + 2, 2), nullptr, 16)));
  return bytes;
}

FileBuilder::FileBuilder(std::string_view kinds) {
  const auto pieces = Split(kinds, ' ');
  if (std::ranges::find(pieces, "01") == pieces.end()) Append("01");
  for (const std::string_view piece : pieces) {
    const auto [code, times] = Cut(piece, '*');
    for (int i = times.empty() ? 1 : Number(times); i > 0; --i)
      Append(code);
  }
  Announce();
}

void FileBuilder::Append(std::string_view code) {
  const KindInfo& kind = KindNamed(code);
  const int ordinal = ++ordinals_[kind.kind];
  for (const Kind child : ChildrenOf(kind.kind))
    ordinals_[child] = 0;
  Built record{&kind, std::string(static_cast<std::size_t>(kind.length), '0').append(kCrLf)};
  Set(record, "CR", code);
  const auto* const defaults = std::ranges::find(kDefaults, kind.kind, &Defaults::kind);
  if (defaults != kDefaults.end()) {
    for (const std::string_view given : Split(defaults->values, ';')) {
      const auto [field, value] = Cut(given, '=');
      Set(record, field, Numbered(value, ordinal));
    }
  }
  records_.push_back(std::move(record));
}

// Quantities, and what a record owes to its details.
void FileBuilder::Announce() {
  ByKind<std::optional<std::size_t>> last;
  std::map<std::pair<std::size_t, Kind>, int> counts;
  for (std::size_t i = 0; i < records_.size(); ++i) {
    const KindInfo& kind = *records_[i].kind;
    if (kind.parent && last[*kind.parent]) ++counts[{*last[*kind.parent], kind.kind}];
    last[kind.kind] = i;
  }
  for (const auto& [key, count] : counts) {
    Built& parent = records_[key.first];
    Set(parent, InfoOf(key.second).quantity.name, std::to_string(count));
    if (key.second == Kind::kCr14) Set(parent, "CFOP", "6" + parent.bytes.substr(3, 5));  // interstate
    const auto* const owed = std::ranges::find(kOwed, key.second, &Defaults::kind);
    if (owed == kOwed.end()) continue;
    for (const std::string_view given : Split(owed->values, ';'))
      Set(parent, Cut(given, '=').first, Cut(given, '=').second);
    Set(parent, "Valor", std::to_string(100 * count));
  }
}

void FileBuilder::Set(Built& record, std::string_view field, std::string_view value) {
  const auto& fields = record.kind->fields;
  const auto found = std::ranges::find(fields, field, &FieldInfo::name);
  if (found == fields.end()) throw std::logic_error("no such field: " + std::string(field));
  const auto width = static_cast<std::size_t>(found->width);
  const auto start = static_cast<std::size_t>(found->position) - 1;
  std::string text(value);
  if (field == "Separadores") {
    record.bytes.replace(start, std::string::npos, text);
    return;
  }
  if (text.size() > width) throw std::logic_error("too long for " + std::string(field) + ": " + text);
  const bool words = field == Cr20::kFLegal.name || field == Cr20::kOcorrencia.name;
  text.insert(words ? text.size() : 0, width - text.size(), words ? ' ' : '0');
  record.bytes.replace(start, width, text);
}

int FileBuilder::Line(std::string_view code, int ordinal) const {
  for (std::size_t i = 0; i < records_.size(); ++i) {
    if (records_[i].kind->code == code && --ordinal == 0) return static_cast<int>(i) + 1;
  }
  throw std::logic_error("no such record: " + std::string(code));
}

std::string FileBuilder::Record(int line) const {
  std::string record = records_.at(static_cast<std::size_t>(line) - 1).bytes;
  if (line == Lines()) {
    const std::size_t gone = std::min(cut_, record.size());
    record.replace(record.size() - gone, std::string::npos, gone, '\0');
  }
  return record;
}

FileBuilder& FileBuilder::With(std::string_view field, std::string_view value) {
  const auto [record, name] = Cut(field, '.');
  const auto [code, ordinal] = Cut(record, '#');
  const int line = Line(code, ordinal.empty() ? 1 : Number(ordinal));
  Set(records_[static_cast<std::size_t>(line) - 1], name, WithBytes(value));
  return *this;
}

FileBuilder& FileBuilder::Edit(std::string_view edits) {
  for (const std::string_view edit : Split(edits, ';')) {
    const auto [field, value] = Cut(edit, '=');
    if (field == "cut") {
      cut_ = static_cast<std::size_t>(Number(value));
    } else {
      With(field, value);
    }
  }
  return *this;
}

std::string FileBuilder::Bytes() const {
  std::string bytes;
  for (const Built& record : records_)
    bytes += record.bytes;
  bytes.resize(bytes.size() - std::min(cut_, bytes.size()));
  return bytes;
}

}  // namespace tremvik::sample
