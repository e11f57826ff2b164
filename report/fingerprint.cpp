#include "report/fingerprint.h"

#include <algorithm>
#include <map>

#include "examination/lines.h"
#include "report/sha256.h"

namespace tremvik::report {
namespace {

constexpr std::size_t kDigits = 32;

// The keys of the declarations by the lines where they begin.
std::map<int, std::string> DeclarationsByLine(std::string_view bytes) {
  std::map<int, std::string> declarations{{0, {}}};
  int linha = 0;
  for (const Line& line : SplitLines(bytes, kMostLines)) {
    ++linha;
    if (KindOf(line.content) != &InfoOf(Kind::kCr05)) continue;
    std::string& key = declarations[linha];
    for (const auto& field : {Cr05::kIE, Cr05::kRef}) {
      const std::size_t at = std::min(static_cast<std::size_t>(field.position) - 1, line.content.size());
      key += line.content.substr(at, static_cast<std::size_t>(field.width));
    }
  }
  return declarations;
}

}  // namespace

std::vector<std::string> Fingerprints(const FileReport& file) {
  std::vector<std::string> fingerprints;
  if (file.exame.inconsistencias.empty()) return fingerprints;
  const auto declarations = DeclarationsByLine(file.conteudo);
  std::map<std::string, int> seen;
  for (const Finding& finding : file.exame.inconsistencias) {
    std::string key = std::prev(declarations.upper_bound(std::max(finding.linha, 0)))->second;
    for (const std::string& part : {finding.regra, finding.registro, finding.campo, finding.valor})
      key.append(1, '\n').append(part);
    key += '\n' + std::to_string(seen[key]++);
    fingerprints.push_back(Sha256(key).substr(0, kDigits));
  }
  return fingerprints;
}

}  // namespace tremvik::report
