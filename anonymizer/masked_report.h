#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

#include "anonymizer/anonymizer.h"
#include "report/file_report.h"

namespace tremvik::anonymizer {

/// Examines a file of those bytes.
using Examiner = std::function<Examination(std::string_view)>;

/// What stands for a file that is shown to others, and what an examination tells of it.
struct Mask {
  Anonymized other;
  Examination exame;
};
/// The mask of the file with these bytes (`Anonymize`), examined by `examine`. Raises what that raises.
[[nodiscard]] Mask MakeMask(std::string_view bytes, const Examiner& examine, std::uint64_t seed);

/// The report on `file` that can be shown to others: content, name and sentences with the other numbers, the
/// findings as they are told of the other content. A finding that it does not have, such as one of a
/// declaration held already, keeps its place and its rule's text; of findings that are gone only the rule and
/// the place are left. `mask` is that of the file; the report may lack findings that were taken out of it.
[[nodiscard]] report::FileReport Masked(const report::FileReport& file, const Mask& mask);

}  // namespace tremvik::anonymizer
