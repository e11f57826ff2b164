#include "report/field_text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "runtime/display.h"
#include "runtime/numbers.h"
#include "runtime/text.h"
#include "text/readable.h"

namespace tremvik::report {
namespace {

// Fields that are digits, and where those go; "@" is a digit. A field of another width has another form.
struct Form {
  std::string_view name;
  std::string_view mask;
};
constexpr std::array kForms{
    Form{"IE", kMascaraIE},          Form{"IESubstituto", kMascaraIE}, Form{"IESubstituído", kMascaraIE},
    Form{"CNPJ", kMascaraCNPJ},      Form{"CNAE", "@@@@-@/@@"},        Form{"CódSubItem", kMascaraSubItem},
    Form{"HoraGeração", "@@:@@:@@"},
};
constexpr std::array<std::string_view, 2> kDates{"Data", "DataGeração"};
constexpr std::array<std::string_view, 4> kPeriods{"Ref", "RefInicial", "DataInicio", "DataFim"};
constexpr int kAmountWidth = 15;

bool IsOneOf(std::string_view name, std::span<const std::string_view> names) {
  return std::ranges::find(names, name) != names.end();
}

bool IsQuantity(const FieldInfo& field) {
  return std::ranges::any_of(kKinds, [&](const KindInfo& kind) {
    return kind.parent.has_value() && kind.quantity.name == field.name;
  });
}

bool IsZero(std::string_view digits) { return digits.find_first_not_of('0') == std::string_view::npos; }

std::string Masked(std::string_view mask, std::string_view digits) {
  return std::string(Mascara(mask, digits).view());
}

// AAAAMMDD and AAAAMM as people write them. No date at all is zeros.
std::string Date(std::string_view digits) {
  return std::string(digits.substr(6))
      .append("/")
      .append(digits.substr(4, 2))
      .append("/")
      .append(digits.substr(0, 4));
}
std::string Period(std::string_view digits) {
  return std::string(digits.substr(4)).append("/").append(digits.substr(0, 4));
}

std::string WithoutLeadingZeros(std::string_view digits) {
  return std::string(IsZero(digits) ? "0" : digits.substr(digits.find_first_not_of('0')));
}

// A field that is all digits and as wide as it should be.
std::string OfDigits(const FieldInfo& field, std::string_view digits) {
  const auto form = std::ranges::find(kForms, field.name, &Form::name);
  if (form != kForms.end()) return Masked(form->mask, digits);
  const bool is_date = IsOneOf(field.name, kDates);
  const bool is_period = IsOneOf(field.name, kPeriods);
  if ((is_date || is_period) && IsZero(digits)) return std::string(digits);
  if (is_date) return Date(digits);
  if (is_period) return Period(digits);
  if (field.name == "CFOP" && digits.ends_with("00"))
    return std::string(digits.substr(0, 1)).append(".").append(digits.substr(1, 3));
  if (IsQuantity(field)) return WithoutLeadingZeros(digits);
  if (field.width == kAmountWidth && field.name != "RE") return std::string(FomataValor(digits).view());
  return std::string(digits);
}

// A text field's own text: blanks at the end are filling.
bool IsText(const FieldInfo& field) {
  constexpr std::array<std::string_view, 5> kTexts{"FLegal", "Ocorrência", "Conteúdo", "CodAutorizacao",
                                                   "ChaveInterna"};
  return IsOneOf(field.name, kTexts);
}

}  // namespace

std::string_view NameOfKind(Kind kind) {
  static constexpr std::array<std::string_view, kKindCount> kNames{"registro mestre",
                                                                   "declaração",
                                                                   "pagamento",
                                                                   "detalhes de um CFOP",
                                                                   "detalhe interestadual",
                                                                   "remessa a área de livre comércio",
                                                                   "ocorrência",
                                                                   "IE da ocorrência",
                                                                   "contribuinte substituto",
                                                                   "contribuinte substituído",
                                                                   "autorização de crédito acumulado",
                                                                   "valor da DIPAM",
                                                                   "registro de exportação"};
  return kNames[static_cast<std::size_t>(kind)];
}

std::string FieldForPeople(const FieldInfo& field, std::string_view bytes) {
  if (bytes.empty()) return "(falta)";
  const bool whole = bytes.size() == static_cast<std::size_t>(field.width);
  if (whole && OnlyDigits(bytes)) return OfDigits(field, bytes);
  const std::string_view text = bytes.substr(0, bytes.find_last_not_of(' ') + 1);
  if (whole && text.empty()) return "(em branco)";
  const std::string quoted = text::Quoted(bytes, bytes.size());
  const std::string plain = Utf8(text);
  const bool is_plain = whole && IsText(field) && quoted.substr(1).starts_with(plain);
  return is_plain ? plain : quoted;
}

}  // namespace tremvik::report
