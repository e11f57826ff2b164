#include "adapters/local/local_application.h"

#include <algorithm>
#include <fstream>

namespace tremvik {
namespace {

char Minuscula(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool SameName(std::string_view a, std::string_view b) {
  return std::ranges::equal(a, b, {}, Minuscula, Minuscula);
}

std::string_view Trim(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const auto begin = text.find_first_not_of(kBlanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

}  // namespace

std::string LocalApplication::GetSetting(std::string_view application, std::string_view section,
                                         std::string_view key, std::string_view fallback) {
  std::ifstream file(std::string(config_home_).append("/").append(application).append("/configuracao.ini"));
  bool inside = false;
  std::string line;
  for (bool first = true; std::getline(file, line); first = false) {
    std::string_view text = line;
    if (first && text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);  // the mark of UTF-8 editors
    text = Trim(text);
    if (text.starts_with(';') || text.starts_with('#')) continue;
    if (text.starts_with('[') && text.ends_with(']')) {
      inside = SameName(Trim(text.substr(1, text.size() - 2)), section);
      continue;
    }
    const auto equals = text.find('=');
    if (!inside || equals == std::string_view::npos) continue;
    if (SameName(Trim(text.substr(0, equals)), key)) return std::string(Trim(text.substr(equals + 1)));
  }
  return std::string(fallback);
}

}  // namespace tremvik
