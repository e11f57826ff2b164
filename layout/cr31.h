#pragma once

#include <array>

#include "host/record_kind.h"
#include "layout/field.h"

namespace tremvik {

struct Cr31 {  // export registration of a declaration
  static constexpr Kind kKind = Kind::kCr31;
  static constexpr Field<Cr31> kCr{"CR", 1, 2}, kRE{"RE", 3, 15}, kSeparadores{"Separadores", 18, 2};
  static constexpr std::array kFields{kCr, kRE, kSeparadores};
};
static_assert(Covers(Cr31::kFields, 19));

}  // namespace tremvik
