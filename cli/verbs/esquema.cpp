#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"
#include "report/json_format.h"

namespace tremvik::cli {
namespace {

class Esquema final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"esquema", "Escreve o JSON Schema do relatório json",
            "Exemplo:\n"
            "  tremvik esquema > relatorio.schema.json\n\n"
            "O relatório é o de: tremvik validar ARQUIVO... --todos --relatorio json"};
  }
  void Declare(VerbOptions& /*options*/) override {}
  ExitStatus Execute(const Terminal& /*terminal*/, Output& out, Output& /*err*/) override {
    out.Write(report::JsonSchema());
    return ExitStatus::kAccepted;
  }
};

}  // namespace

std::unique_ptr<Verb> MakeEsquema() { return std::make_unique<Esquema>(); }

}  // namespace tremvik::cli
