#include "fuzz/repairs.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <stdexcept>

#include "adapters/local/documents.h"
#include "sample/registrations.h"

namespace tremvik::fuzz {
namespace {

template <typename R>
FieldInfo Info(const Field<R>& field) {
  return {field.name, field.position, field.width};
}

bool IsDigits(std::string_view text) {
  return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

// The number in a field of digits, else 0.
std::int64_t Number(std::string_view text) {
  std::int64_t number = 0;
  if (IsDigits(text)) std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

// Writes `text` into the field of a line that is long enough for it.
template <typename R>
void Put(std::string& line, const Field<R>& field, std::string_view text) {
  if (FieldText(line, Info(field)).empty()) return;
  line.replace(static_cast<std::size_t>(field.position - 1), static_cast<std::size_t>(field.width), text);
}

template <typename R>
void PutNumber(std::string& line, const Field<R>& field, std::int64_t number) {
  const auto width = static_cast<std::size_t>(field.width);
  std::string text = std::to_string(number);
  if (text.size() > width) text = text.substr(text.size() - width);
  Put(line, field, std::string(width - text.size(), '0') + text);
}

// Counts the records of kind `code` after the line at `parent`, up to the next record of one of `until`.
int CountAfter(const Lines& lines, std::size_t parent, std::string_view code,
               std::initializer_list<std::string_view> until) {
  int count = 0;
  for (std::size_t i = parent + 1; i < lines.size(); ++i) {
    const std::string_view here = std::string_view(lines[i]).substr(0, 2);
    if (std::ranges::find(until, here) != until.end()) break;
    if (here == code) ++count;
  }
  return count;
}

template <typename R>
void Announce(Lines& lines, std::size_t parent, const Field<R>& quantity,
              std::initializer_list<std::string_view> until) {
  PutNumber(lines[parent], quantity, CountAfter(lines, parent, quantity.name.substr(1), until));
}

template <typename R>
void CompleteIE(std::string& line, const Field<R>& field) {
  const std::string ie = FieldText(line, Info(field));
  if (IsDigits(ie)) Put(line, field, CompletarIE(ie.substr(0, 8), ie.substr(9, 2)));
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

std::string FieldText(std::string_view line, const FieldInfo& field) {
  const auto position = static_cast<std::size_t>(field.position - 1);
  const auto width = static_cast<std::size_t>(field.width);
  return line.size() < position + width ? std::string() : std::string(line.substr(position, width));
}

void RepairQuantities(Lines& lines) {
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string_view code = std::string_view(lines[i]).substr(0, 2);
    if (code == "01") Announce(lines, i, Cr01::kQ05, {"01"});
    if (code == "05") {
      for (const auto& field : {Cr05::kQ07, Cr05::kQ10, Cr05::kQ20, Cr05::kQ30, Cr05::kQ31})
        Announce(lines, i, field, {"05"});
    }
    if (code == "10") Announce(lines, i, Cr10::kQ14, {"05", "10"});
    if (code == "14") Announce(lines, i, Cr14::kQ18, {"05", "10", "14"});
    if (code == "20") {
      for (const auto& field : {Cr20::kQ25, Cr20::kQ26, Cr20::kQ27, Cr20::kQ28})
        Announce(lines, i, field, {"05", "20"});
    }
  }
}

void RepairDocuments(Lines& lines) {
  for (std::string& line : lines) {
    if (line.starts_with("05")) {
      CompleteIE(line, Cr05::kIE);
      const std::string cnpj = FieldText(line, Info(Cr05::kCNPJ));
      if (IsDigits(cnpj)) Put(line, Cr05::kCNPJ, CompletarCNPJ(cnpj.substr(0, 12)));
    }
    if (line.starts_with("25")) CompleteIE(line, Cr25::kIE);
    if (line.starts_with("26")) CompleteIE(line, Cr26::kIESubstituto);
    if (line.starts_with("27")) CompleteIE(line, Cr27::kIESubstituido);
  }
}

void RepairSums(Lines& lines) {
  std::string* occurrence = nullptr;
  std::int64_t sum = 0;
  for (std::string& line : lines) {
    if (line.starts_with("20")) {
      occurrence = &line;
      sum = 0;
      continue;
    }
    std::string value;
    if (line.starts_with("25")) value = FieldText(line, Info(Cr25::kValor));
    if (line.starts_with("26")) value = FieldText(line, Info(Cr26::kValor));
    if (line.starts_with("27")) value = FieldText(line, Info(Cr27::kValor));
    if (line.starts_with("28")) value = FieldText(line, Info(Cr28::kValor));
    if (value.empty() || occurrence == nullptr) continue;
    sum += Number(value);
    PutNumber(*occurrence, Cr20::kValor, sum);
  }
}

void RepairAuthorizations(Lines& lines, sample::Sorteio& draw) {
  constexpr std::array<std::string_view, 7> kSubItems{"220", "221", "740", "741", "223", "744", "745"};
  std::string ie;
  std::string sub_item;
  for (std::string& line : lines) {
    if (line.starts_with("05")) ie = FieldText(line, Info(Cr05::kIE));
    if (line.starts_with("20")) sub_item = FieldText(line, Info(Cr20::kCodSubItem));
    if (!line.starts_with("28") || !IsDigits(ie) || sub_item.size() != 5) continue;
    if (std::ranges::find(kSubItems, std::string_view(sub_item).substr(2)) == kSubItems.end()) continue;
    const std::int64_t value = Number(FieldText(line, Info(Cr28::kValor)));
    Put(line, Cr28::kCodAutorizacao, sample::SortearAutorizacao(draw, sub_item, value, ie));
  }
}

void RepairOrder(Lines& lines) {
  std::string last;
  for (std::string& line : lines) {
    if (!line.starts_with("05")) continue;
    const std::string key = FieldText(line, Info(Cr05::kIE)) + FieldText(line, Info(Cr05::kRef));
    if (key.size() == 18 && !last.empty() && key <= last && IsDigits(last)) {
      const std::int64_t ref = Number(std::string_view(last).substr(12));
      Put(line, Cr05::kIE, last.substr(0, 12));
      PutNumber(line, Cr05::kRef, ref % 100 >= 12 ? ref + 89 : ref + 1);
    }
    last = FieldText(line, Info(Cr05::kIE)) + FieldText(line, Info(Cr05::kRef));
  }
}

}  // namespace tremvik::fuzz
