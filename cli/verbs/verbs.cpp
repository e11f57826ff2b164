#include "cli/verbs/verbs.h"

#include <array>

namespace tremvik::cli {
namespace {

constexpr std::array kMakers{MakeImportar,   MakeValidar,          MakeExplicar,         MakeRegras,
                             MakeMostrar,    MakeListar,           MakeEsquema,          MakeExemplo,
                             MakeAnonimizar, MakeTabelasConstruir, MakeTabelasVerificar, MakeTabelasExportar};

}  // namespace

std::vector<std::unique_ptr<Verb>> MakeVerbs() {
  std::vector<std::unique_ptr<Verb>> verbs;
  verbs.reserve(kMakers.size());
  for (const auto& make : kMakers)
    verbs.push_back(make());
  return verbs;
}

VerbTexts GroupTexts(const std::string& /*name*/) {
  return {"tabelas", "Constrói, verifica ou exporta as tabelas de referência",
          "Exemplos:\n"
          "  tremvik tabelas construir --dados minhas-tabelas tblFixas.fix\n"
          "  tremvik tabelas verificar tblFixas.fix\n\n"
          "A importação usa o arquivo tblFixas.fix da sua pasta (--pasta)."};
}

}  // namespace tremvik::cli
