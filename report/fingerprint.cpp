#include "report/fingerprint.h"

#include <map>

#include "report/declaration_keys.h"
#include "report/sha256.h"

namespace tremvik::report {
namespace {

constexpr std::size_t kDigits = 32;

}  // namespace

std::vector<std::string> Fingerprints(const FileReport& file) {
  std::vector<std::string> fingerprints;
  if (file.exame.inconsistencias.empty()) return fingerprints;
  const DeclarationKeys declarations(file.conteudo);
  std::map<std::string, int> seen;
  for (const Finding& finding : file.exame.inconsistencias) {
    const DeclarationKey& declaration = declarations.Of(finding.linha);
    std::string key = declaration.ie + declaration.referencia;
    for (const std::string& part : {finding.regra, finding.registro, finding.campo, finding.valor})
      key.append(1, '\n').append(part);
    key += '\n' + std::to_string(seen[key]++);
    fingerprints.push_back(Sha256(key).substr(0, kDigits));
  }
  return fingerprints;
}

}  // namespace tremvik::report
