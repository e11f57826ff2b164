#include "anonymizer/registrations.h"

#include <algorithm>
#include <cstddef>

#include "adapters/local/documents.h"
#include "anonymizer/order_map.h"
#include "runtime/numbers.h"
#include "sample/draw.h"

namespace tremvik::anonymizer {
namespace {

constexpr std::size_t kNumber = 8;          // digits of an IE before its first check digit
constexpr std::size_t kMostWork = 2000000;  // numbers drawn before their order is left as it is

// The digit that is as far from `right_now` as `digit` was from `right_before`.
char Moved(char digit, char right_before, char right_now) {
  if (!IsDigit(digit)) return digit;
  return static_cast<char>('0' + (digit - right_before + right_now - '0' + 10) % 10);
}

// The IE with another number in front.
std::string WithNumber(std::string_view ie, const std::string& number) {
  std::string out = number + std::string(ie.substr(kNumber));
  if (!OnlyDigits(number)) return out;
  out[8] = Moved(ie[8], DigitoIE9(ie), DigitoIE9(out));
  if (OnlyDigits(Left(ie, 11))) out[11] = Moved(ie[11], DigitoIE12(ie), DigitoIE12(out));
  return out;
}

std::string OtherCNPJ(std::string_view cnpj, std::uint64_t seed) {
  if (cnpj.find_first_not_of('0') == std::string_view::npos) return std::string(cnpj);
  if (!OnlyDigits(cnpj)) return OtherDigits(cnpj, seed);
  std::string out = sample::Draw(Mixed(seed, cnpj)).Digits(12);
  out = CompletarCNPJ(out);
  out[12] = Moved(cnpj[12], CompletarCNPJ(cnpj)[12], out[12]);
  // The second digit is made of the first one as it stands.
  const auto second = [](std::string_view thirteen) {
    for (char digit = '0'; digit < '9'; ++digit) {
      if (ValidadorDocumentosLocal().ValidarCNPJ(std::string(thirteen) + digit)) return digit;
    }
    return '9';
  };
  out[13] = Moved(cnpj[13], second(cnpj.substr(0, 13)), second(out.substr(0, 13)));
  return out;
}

// A number in a text: its first `wanted` digits, which single signs may part, and where they end; none where
// there are fewer, or more right behind.
struct Found {
  std::string digits;
  std::size_t end = 0;
};
Found NumberAt(std::string_view text, std::size_t at, std::size_t wanted) {
  Found found;
  for (std::size_t i = at; i < text.size() && found.digits.size() < wanted; ++i) {
    if (IsDigit(text[i])) {
      found.digits += text[i];
      found.end = i + 1;
    } else if (std::string_view("./-").find(text[i]) == std::string_view::npos || !IsDigit(text[i - 1])) {
      return {};
    }
  }
  const bool more = found.end < text.size() && IsDigit(text[found.end]);
  return found.digits.size() < wanted || more ? Found{} : found;
}

}  // namespace

std::uint64_t Mixed(std::uint64_t seed, std::string_view text) {
  std::uint64_t mixed = seed ^ 0xCBF29CE484222325U;
  for (const char c : text)
    mixed = (mixed ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  return sample::Draw(mixed).Bits();
}

std::string OtherDigits(std::string_view text, std::uint64_t seed) {
  sample::Draw draw(Mixed(seed, text));
  std::string out(text);
  for (char& c : out) {
    if (IsDigit(c) && c != '0') c = draw.Between('1', '9');
  }
  return out;
}

Registrations::Registrations(const std::set<std::string>& ies, std::uint64_t seed) : seed_(seed) {
  DrawIEs(ies);
}

// A right and a wrong check digit of one number may change places; then all are drawn again.
void Registrations::DrawIEs(const std::set<std::string>& ies) {
  std::set<std::string> numbers;
  for (const std::string& ie : ies)
    numbers.insert(ie.substr(0, kNumber));
  sample::Draw draw(seed_);
  bool rising = false;
  for (std::size_t work = 0; !rising && work < kMostWork; work += ies.size() + 1) {
    const OrderMap map(numbers, draw, '8');
    ies_.clear();
    for (const std::string& ie : ies)
      ies_.emplace(ie, WithNumber(ie, map[ie.substr(0, kNumber)]));
    rising = std::ranges::is_sorted(ies_, {}, [](const auto& pair) { return std::string_view(pair.second); });
  }
}

const std::string& Registrations::CNPJ(std::string_view cnpj) {
  return cnpjs_.try_emplace(std::string(cnpj), OtherCNPJ(cnpj, seed_)).first->second;
}

// What stands for a plain number of 12 or 14 digits; empty where it is no registration.
std::string Registrations::Replacement(const std::string& digits) const {
  const auto& known = digits.size() == 12 ? ies_ : cnpjs_;
  if (const auto found = known.find(digits); found != known.end()) return found->second;
  ValidadorDocumentosLocal documents;
  if (documents.ValidarIE(digits))
    return WithNumber(digits, sample::Draw(Mixed(seed_, digits)).Digits(kNumber));
  return documents.ValidarCNPJ(digits) ? OtherCNPJ(digits, seed_) : std::string();
}

std::string Registrations::InText(std::string_view text) const {
  std::string out(text);
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!IsDigit(text[at]) || (at > 0 && IsDigit(text[at - 1]))) continue;
    std::size_t end = ReplaceNumber(out, at, 14);
    if (end == 0) end = ReplaceNumber(out, at, 12);
    at = std::max(at, end);
  }
  return out;
}

// Puts another number in the place of the one of so many digits that begins at `at`, if it is a registration:
// where it ends, else 0.
std::size_t Registrations::ReplaceNumber(std::string& text, std::size_t at, std::size_t digits) const {
  const Found found = NumberAt(text, at, digits);
  const std::string other = found.digits.empty() ? std::string() : Replacement(found.digits);
  if (other.empty()) return 0;
  for (std::size_t i = at, digit = 0; i < found.end; ++i) {
    if (IsDigit(text[i])) text[i] = other[digit++];
  }
  return found.end;
}

}  // namespace tremvik::anonymizer
