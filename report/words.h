// How all reports name the same things, and what they say in one line.
#pragma once

#include <string>
#include <string_view>

#include "report/file_report.h"

namespace tremvik::report {

/// "falta", "aviso".
[[nodiscard]] std::string_view TipoName(FindingKind tipo);

/// A message in one line: its parts, which a run shows one under the other, parted by blanks.
[[nodiscard]] std::string OneLine(std::string_view message);

/// The message and, where there is one, the reason, in one line.
[[nodiscard]] std::string MessageAndReason(const Finding& finding);

/// "Linhas 3 a 9 não examinadas: O cabeçalho..."
[[nodiscard]] std::string InWords(const Unexamined& unexamined);

/// What is said where the limit of findings was reached.
inline constexpr std::string_view kLimitReached =
    "O limite de inconsistências foi atingido: pode haver mais.";

}  // namespace tremvik::report
