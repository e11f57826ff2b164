#include "report/words.h"

#include "runtime/text.h"

namespace tremvik::report {

std::string_view TipoName(FindingKind tipo) { return tipo == FindingKind::kQuestion ? "aviso" : "falta"; }

std::string OneLine(std::string_view message) {
  std::string line;
  for (bool more = true; more;) {
    const std::size_t end = message.find_first_of("\r\n");
    const std::string_view part = Trim(message.substr(0, end));
    if (!part.empty()) line.append(line.empty() ? "" : " ").append(part);
    more = end != std::string_view::npos;
    if (more) message.remove_prefix(end + 1);
  }
  return line;
}

std::string MessageAndReason(const Finding& finding) {
  std::string words = OneLine(finding.mensagem);
  if (!finding.porque.empty()) words.append(" (").append(OneLine(finding.porque)).append(")");
  return words;
}

std::string InWords(const Unexamined& unexamined) {
  const std::string first = std::to_string(unexamined.linha);
  return (unexamined.linha == unexamined.ate
              ? "Linha " + first + " não examinada: "
              : "Linhas " + first + " a " + std::to_string(unexamined.ate) + " não examinadas: ") +
         OneLine(unexamined.porque);
}

}  // namespace tremvik::report
