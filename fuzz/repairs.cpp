#include "fuzz/repairs.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

#include "adapters/local/documents.h"
#include "checks/credit_code.h"
#include "runtime/numbers.h"
#include "sample/registrations.h"

namespace tremvik::fuzz {
namespace {

// The number in a text of digits, else 0.
std::int64_t Number(std::string_view text) {
  std::int64_t number = 0;
  if (OnlyDigits(text)) std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

// The bytes of the field of that name; empty when the line's kind has none or
// the line is too short for it.
std::string_view Get(std::string_view line, std::string_view name) {
  const KindInfo* const kind = KindOf(line);
  if (kind == nullptr) return {};
  const auto field = std::ranges::find(kind->fields, name, &FieldInfo::name);
  return field == kind->fields.end() ? std::string_view() : FieldText(line, *field);
}

// Writes `text`, as wide as the field, over the field's bytes, where there are
// any.
void Put(std::string& line, std::string_view name, std::string_view text) {
  const std::string_view bytes = Get(line, name);
  if (!bytes.empty()) line.replace(static_cast<std::size_t>(bytes.data() - line.data()), bytes.size(), text);
}

// The number's last digits, as many as the field has.
void PutNumber(std::string& line, std::string_view name, std::int64_t number) {
  const std::size_t width = Get(line, name).size();
  const std::string text = std::string(width, '0') + std::to_string(number);
  Put(line, name, std::string_view(text).substr(text.size() - width));
}

// True when a record of `kind` ends what lies under one of `parent` before it:
// the same kind, or one above it.
bool Ends(Kind kind, std::optional<Kind> parent) {
  while (parent && *parent != kind)
    parent = InfoOf(*parent).parent;
  return parent.has_value();
}

int CountUnder(const Lines& lines, std::size_t parent, const KindInfo& child) {
  int count = 0;
  for (std::size_t i = parent + 1; i < lines.size(); ++i) {
    const KindInfo* const kind = KindOf(lines[i]);
    if (kind == nullptr) continue;
    if (Ends(kind->kind, child.parent)) break;
    if (kind == &child) ++count;
  }
  return count;
}

}  // namespace

Lines SplitLines(std::string_view file) {
  Lines lines;
  while (!file.empty()) {
    const std::size_t end = std::min(file.find('\n'), file.size() - 1) + 1;
    lines.emplace_back(file.substr(0, end));
    file.remove_prefix(end);
  }
  return lines;
}

std::string JoinLines(const Lines& lines) {
  std::string file;
  for (const std::string& line : lines)
    file += line;
  return file;
}

const KindInfo* KindOf(std::string_view line) { return FindKind(line.substr(0, 2)); }

std::string_view FieldText(std::string_view line, const FieldInfo& field) {
  const auto position = static_cast<std::size_t>(field.position - 1);
  const auto width = static_cast<std::size_t>(field.width);
  return line.size() < position + width ? std::string_view() : line.substr(position, width);
}

void RepairQuantities(Lines& lines) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const KindInfo* const kind = KindOf(lines[i]);
    for (const KindInfo& child : kKinds) {
      if (kind == nullptr || child.parent != kind->kind) continue;
      PutNumber(lines[i], child.quantity.name, CountUnder(lines, i, child));
    }
  }
}

void RepairDocuments(Lines& lines) {
  for (std::string& line : lines) {
    for (const std::string_view name : {"IE", "IESubstituto", "IESubstituído"}) {
      const std::string_view ie = Get(line, name);
      if (OnlyDigits(ie)) Put(line, name, CompletarIE(ie.substr(0, 8), ie.substr(9, 2)));
    }
    const std::string_view cnpj = Get(line, "CNPJ");
    if (OnlyDigits(cnpj)) Put(line, "CNPJ", CompletarCNPJ(cnpj.substr(0, 12)));
  }
}

void RepairSums(Lines& lines) {
  std::string* occurrence = nullptr;
  std::int64_t sum = 0;
  for (std::string& line : lines) {
    const KindInfo* const kind = KindOf(line);
    if (kind == nullptr) continue;
    if (kind->kind == Kind::kCr20) {
      occurrence = &line;
      sum = 0;
    } else if (kind->parent == Kind::kCr20 && occurrence != nullptr) {
      sum += Number(Get(line, "Valor"));
      PutNumber(*occurrence, "Valor", sum);
    }
  }
}

void RepairAuthorizations(Lines& lines, sample::Draw& draw) {
  std::string ie;
  std::string sub_item;
  for (std::string& line : lines) {
    if (line.starts_with("05")) ie = Get(line, "IE");
    if (line.starts_with("20")) sub_item = Get(line, "CódSubItem");
    if (!line.starts_with("28") || !OnlyDigits(ie)) continue;
    const std::int64_t value = Number(Get(line, "Valor"));
    if (InicioDoCodigo(std::to_string(value), sub_item, ie).empty()) continue;  // no letter of its own
    Put(line, "CodAutorizacao", sample::DrawAutorizacao(draw, sub_item, value, ie));
  }
}

void RepairOrder(Lines& lines) {
  std::string ie;
  std::string ref;
  for (std::string& line : lines) {
    if (!line.starts_with("05")) continue;
    const bool later = std::string(Get(line, "IE")).append(Get(line, "Ref")) > ie + ref;
    if (!later && OnlyDigits(ie) && OnlyDigits(ref)) {
      const std::int64_t last = Number(ref);
      Put(line, "IE", ie);
      PutNumber(line, "Ref", last % 100 >= 12 ? last + 89 : last + 1);
    }
    ie = Get(line, "IE");
    ref = Get(line, "Ref");
  }
}

}  // namespace tremvik::fuzz
