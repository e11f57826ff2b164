#pragma once

#include <string>
#include <vector>

#include "report/file_report.h"

namespace tremvik::report {

/// For each finding of a file, in their order, 32 hexadecimal digits by which it is known again in a later
/// state of the file: made of the rule, the declaration (IE and reference), the field and its value, and not
/// of lines or of the file's name. Findings that agree in these are counted apart.
[[nodiscard]] std::vector<std::string> Fingerprints(const FileReport& file);

}  // namespace tremvik::report
