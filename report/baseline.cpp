#include "report/baseline.h"

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "report/declaration_keys.h"
#include "text/json_text.h"

namespace tremvik::report {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char* kVersionKey = "linhaDeBase";
constexpr const char* kFilesKey = "arquivos";
constexpr int kVersion = 1;

// "./a/../marco.txt" is "marco.txt".
std::string PlainName(const std::string& path) {
  return std::filesystem::path(path).lexically_normal().generic_string();
}

KnownFinding KnownOf(const Finding& finding, const DeclarationKeys& declarations) {
  const DeclarationKey& declaration = declarations.Of(finding.linha);
  return {.regra = finding.regra,
          .registro = finding.registro,
          .campo = finding.campo,
          .valor = finding.valor,
          .ie = declaration.ie,
          .referencia = declaration.referencia};
}

Json ObjectOf(const KnownFinding& known) {
  return {{"regra", known.regra}, {"registro", known.registro},
          {"campo", known.campo}, {"valor", known.valor},
          {"ie", known.ie},       {"referencia", known.referencia},
          {"vezes", known.vezes}};
}

KnownFinding KnownOf(const Json& object) {
  const auto text = [&object](const char* key) { return object.at(key).get<std::string>(); };
  return {.regra = text("regra"),
          .registro = text("registro"),
          .campo = text("campo"),
          .valor = text("valor"),
          .ie = text("ie"),
          .referencia = text("referencia"),
          .vezes = object.at("vezes").get<std::size_t>()};
}

// The declarations of which it is not known what is gone.
class Hidden {
 public:
  Hidden(const FileReport& file, const DeclarationKeys& declarations) : all_(file.exame.limitado) {
    for (const Unexamined& gap : file.exame.naoExaminado) {
      for (int linha = gap.linha; linha <= gap.ate; ++linha) {
        const DeclarationKey& key = declarations.Of(linha);
        keys_.emplace(key.ie, key.referencia);
      }
    }
  }
  [[nodiscard]] bool Holds(const KnownFinding& known) const {
    return all_ || keys_.contains({known.ie, known.referencia});
  }

 private:
  bool all_;
  std::set<std::pair<std::string, std::string>> keys_;
};

// A byte that is no UTF-8 becomes what `JsonText` writes for it, so that it is found again.
std::string AsWritten(const std::string& text) {
  return Json::parse(text::JsonText(text)).get<std::string>();
}

}  // namespace

Baseline Baseline::Parse(std::string_view text) {
  Baseline baseline;
  try {
    const Json document = Json::parse(text);
    if (document.at(kVersionKey) != kVersion) throw BaselineError("é de outra versão do programa");
    for (const auto& [name, findings] : document.at(kFilesKey).items()) {
      Known& known = baseline.files_[name];
      for (const Json& object : findings)
        known.insert(KnownOf(object));
    }
  } catch (const Json::parse_error& error) {
    throw BaselineError("não é um texto JSON (erro no byte " + std::to_string(error.byte) + ")");
  } catch (const Json::exception&) {
    throw BaselineError("não tem a forma de uma linha de base");
  }
  return baseline;
}

void Baseline::Add(const FileReport& file) {
  if (file.exame.inconsistencias.empty()) return;
  const DeclarationKeys declarations(file.conteudo);
  Known& known = files_[AsWritten(PlainName(file.arquivo))];
  for (const Finding& finding : file.exame.inconsistencias) {
    KnownFinding one = KnownOf(finding, declarations);
    if (const auto same = known.find(one); same != known.end()) {
      one.vezes += same->vezes;
      known.erase(same);
    }
    known.insert(std::move(one));
  }
}

void Baseline::Apply(FileReport& file) const {
  const auto known = files_.find(AsWritten(PlainName(file.arquivo)));
  if (known == files_.end() || file.estado == FileVerdict::kError) return;
  const DeclarationKeys declarations(file.conteudo);
  std::map<KnownFinding, std::size_t> left;
  for (const KnownFinding& one : known->second)
    left.emplace(one, one.vezes);
  file.conhecidas += std::erase_if(file.exame.inconsistencias, [&](const Finding& finding) {
    const auto found = left.find(KnownOf(finding, declarations));
    if (found == left.end() || found->second == 0) return false;
    --found->second;
    return true;
  });
  const Hidden hidden(file, declarations);
  for (const auto& [one, times] : left) {
    if (times == 0 || hidden.Holds(one)) continue;
    file.sumidas.push_back(one);
    file.sumidas.back().vezes = times;
  }
}

std::string Baseline::Text() const {
  std::string text =
      "{\"" + std::string(kVersionKey) + "\":" + std::to_string(kVersion) + ",\"" + kFilesKey + "\":{";
  std::string_view before_file = "\n";
  for (const auto& [name, known] : files_) {
    text.append(std::exchange(before_file, ",\n")).append(text::JsonText(name)).append(":[");
    std::string_view before = "\n ";
    for (const KnownFinding& one : known)
      text.append(std::exchange(before, ",\n ")).append(text::JsonText(ObjectOf(one)));
    text += "\n]";
  }
  return text + "\n}}\n";
}

}  // namespace tremvik::report
