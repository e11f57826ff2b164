// The order in which the records under one parent stand.
#pragma once

#include <cstddef>
#include <string_view>

#include "examination/workpiece.h"

namespace tremvik {

/// Which record goes out so that `at`, refused for its field `campo`, may stand: itself, or the one before it
/// where that one alone is in its way. So one record out of place is told once.
[[nodiscard]] std::size_t OutOfPlace(const Workpiece& work, std::size_t at, std::string_view campo);

}  // namespace tremvik
