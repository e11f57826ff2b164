#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "report/file_report.h"

namespace tremvik::anonymizer {

/// Examines a file of those bytes.
using Examiner = std::function<Examination(std::string_view)>;

/// The report on `file` that can be shown to others: its content and its name anonymized (`Anonymize`), the
/// findings told as `examine` tells them of that content. A finding that it does not have, such as one of a
/// declaration held already, keeps its place and its rule's text. Raises what `examine` raises.
[[nodiscard]] report::FileReport Masked(const report::FileReport& file, const Examiner& examine,
                                        std::uint64_t seed);

}  // namespace tremvik::anonymizer
