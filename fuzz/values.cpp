// The published conversions, which a host may call with any text, and the tests of dates and times: each line
// of an input (CR LF) is one text.
#include <algorithm>
#include <string>

#include "checks/dates.h"
#include "component/tremvik.h"
#include "fuzz/target.h"
#include "host/runtime_error.h"
#include "tests/support/memory_host.h"

namespace tremvik::fuzz {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// What `call` returns, or its error as a text; only overflow and texts that are no number may raise.
template <typename Call>
std::string Result(const Call& call) {
  try {
    return std::string(call());
  } catch (const RuntimeError& error) {
    Expect(error.number() == erro::kEstouro || error.number() == erro::kTiposIncompativeis,
           "conversions raise 6 or 13 only");
    return "erro " + std::to_string(error.number());
  }
}

// Digits of the shown value without zeros in front are those of the given one.
bool SameDigits(std::string shown, std::string given) {
  std::erase_if(shown, [](char c) { return !IsDigit(c); });
  shown.erase(0, shown.find_first_not_of('0'));
  given.erase(0, given.find_first_not_of('0'));
  return shown == given;
}

void CheckValue(const Tremvik& tremvik, const std::string& text) {
  const auto value = [&](const std::string& cents) {
    return Result([&] { return tremvik.FomataValor(cents); });
  };
  const std::string shown = value(text);
  if (text.size() > 1 && std::ranges::all_of(text, IsDigit)) {
    Expect(value("+" + text) == shown || text.size() > 38, "a plus sign changes nothing");
    Expect(value("0" + text) == shown || text.size() > 38, "a zero in front changes nothing");
    Expect(shown == "erro 6" || SameDigits(shown, text), "the digits shown are those given");
  }
  constexpr std::size_t kValueWidth = 15;
  if (text.size() == kValueWidth && !tremvik.LefRigNumChr(text)) {
    Expect(!shown.starts_with("erro"), "a value field that passes its test can be shown");
  }
  (void)Result([&] { return tremvik.TiraZeros(text); });
  (void)Result([&] { return ValidarData(text) ? "" : "data"; });
  (void)Result([&] { return ValidarHora(text) ? "" : "hora"; });
}

}  // namespace

const bool kTakesFiles = false;

void Check(std::string_view input) {
  test::MemoryHost host;
  const Tremvik tremvik(host.host());
  while (true) {
    const std::size_t end = input.find("\r\n");
    CheckValue(tremvik, std::string(input.substr(0, end)));
    if (end == std::string_view::npos) return;
    input.remove_prefix(end + 2);
  }
}

}  // namespace tremvik::fuzz
