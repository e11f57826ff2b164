#include "report/declaration_keys.h"

#include <algorithm>
#include <iterator>

#include "examination/lines.h"
#include "layout/kinds.h"
#include "runtime/text.h"

namespace tremvik::report {
namespace {

std::string Text(std::string_view line, const Field<Cr05>& field) {
  return Utf8(Mid(line, static_cast<std::size_t>(field.position), static_cast<std::size_t>(field.width)));
}

}  // namespace

DeclarationKeys::DeclarationKeys(std::string_view bytes) : by_line_{{0, {}}} {
  int linha = 0;
  for (const Line& line : SplitLines(bytes, kMostLines)) {
    ++linha;
    if (KindOf(line.content) == &InfoOf(Kind::kCr05))
      by_line_.insert({linha, {Text(line.content, Cr05::kIE), Text(line.content, Cr05::kRef)}});
  }
}

const DeclarationKey& DeclarationKeys::Of(int linha) const {
  return std::prev(by_line_.upper_bound(std::max(linha, 0)))->second;
}

}  // namespace tremvik::report
