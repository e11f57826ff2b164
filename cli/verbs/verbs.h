#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/verb.h"

namespace tremvik::cli {

/// All verbs, in the order of the help. A new one is a source in this folder and a line in verbs.cpp.
[[nodiscard]] std::vector<std::unique_ptr<Verb>> MakeVerbs();

/// What the help says of the verb `name` that has others below it.
[[nodiscard]] VerbTexts GroupTexts(const std::string& name);

[[nodiscard]] std::unique_ptr<Verb> MakeImportar();
[[nodiscard]] std::unique_ptr<Verb> MakeValidar();
[[nodiscard]] std::unique_ptr<Verb> MakeListar();
[[nodiscard]] std::unique_ptr<Verb> MakeMostrar();
[[nodiscard]] std::unique_ptr<Verb> MakeExplicar();
[[nodiscard]] std::unique_ptr<Verb> MakeRegras();
[[nodiscard]] std::unique_ptr<Verb> MakeEsquema();
[[nodiscard]] std::unique_ptr<Verb> MakeExemplo();
[[nodiscard]] std::unique_ptr<Verb> MakeAnonimizar();
[[nodiscard]] std::unique_ptr<Verb> MakeTabelasConstruir();
[[nodiscard]] std::unique_ptr<Verb> MakeTabelasVerificar();
[[nodiscard]] std::unique_ptr<Verb> MakeTabelasExportar();

}  // namespace tremvik::cli
