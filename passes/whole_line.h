#pragma once

#include <string_view>

#include "input/text_reader.h"
#include "layout/kinds.h"
#include "runtime/text.h"

namespace tremvik {

/// Reads the next line where it is one of a known kind, of its kind's exact length and ended by CR LF, and
/// lies ahead in one piece, as nearly all do; else nothing is read. Valid until the next read.
[[nodiscard]] inline std::string_view TakeWholeLine(TextReader& arquivo) {
  const KindInfo* const kind = FindKind(Left(arquivo.Ahead(), 2));
  return kind == nullptr ? std::string_view{} : arquivo.TakeLine(static_cast<std::size_t>(kind->length));
}

}  // namespace tremvik
