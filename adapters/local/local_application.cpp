#include "adapters/local/local_application.h"

#include <algorithm>

#include "adapters/local/system.h"
#include "runtime/text.h"

namespace tremvik {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool SameName(std::string_view a, std::string_view b) { return std::ranges::equal(a, b, {}, Lower, Lower); }

constexpr std::size_t kMostBytes = std::size_t{1024} * 1024;

constexpr std::string_view kBlanks = " \t\r";

// The next line of `rest`, which loses it.
std::string_view TakeLine(std::string_view& rest) {
  const std::string_view line = rest.substr(0, rest.find('\n'));
  rest.remove_prefix(std::min(line.size() + 1, rest.size()));
  return line;
}

}  // namespace

std::string LocalApplication::GetSetting(std::string_view application, std::string_view section,
                                         std::string_view key, std::string_view fallback) {
  if (config_home_.empty()) return std::string(fallback);
  const std::string path =
      std::string(config_home_).append("/").append(application).append("/configuracao.ini");
  const std::string file = ReadRegularFile(path, kMostBytes).value_or("");
  std::string_view rest = file;
  if (rest.starts_with("\xEF\xBB\xBF")) rest.remove_prefix(3);  // the mark of UTF-8 editors
  bool inside = false;
  while (!rest.empty()) {
    const std::string_view text = Trim(TakeLine(rest), kBlanks);
    if (text.starts_with(';') || text.starts_with('#')) continue;
    if (text.starts_with('[') && text.ends_with(']')) {
      inside = SameName(Trim(text.substr(1, text.size() - 2), kBlanks), section);
      continue;
    }
    const auto equals = text.find('=');
    if (!inside || equals == std::string_view::npos) continue;
    if (SameName(Trim(text.substr(0, equals), kBlanks), key))
      return std::string(Trim(text.substr(equals + 1), kBlanks));
  }
  return std::string(fallback);
}

}  // namespace tremvik
