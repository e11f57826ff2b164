#include "report/formats.h"

#include <algorithm>
#include <array>

#include "report/concise_format.h"
#include "report/json_format.h"
#include "report/text_format.h"

namespace tremvik::report {

std::span<const FormatInfo> Formats() {
  static constexpr std::array kFormats{
      FormatInfo{FormatKind::kTexto, "texto", false, true, "para ler: cada falta no seu lugar e como mendar"},
      FormatInfo{FormatKind::kConciso, "conciso", false, false, "uma linha por falta, para editores"},
      FormatInfo{FormatKind::kJson, "json", true, false, "um documento JSON, para programas"},
  };
  return kFormats;
}

const FormatInfo* FindFormat(std::string_view nome) {
  const auto formats = Formats();
  const auto found = std::ranges::find(formats, nome, &FormatInfo::nome);
  return found == formats.end() ? nullptr : &*found;
}

std::unique_ptr<Format> MakeFormat(FormatKind kind, const text::Look& look) {
  switch (kind) {
    case FormatKind::kTexto:
      return std::make_unique<TextFormat>(look);
    case FormatKind::kConciso:
      return std::make_unique<ConciseFormat>();
    case FormatKind::kJson:
      return std::make_unique<JsonFormat>();
  }
  return nullptr;
}

}  // namespace tremvik::report
