#include "cli/importer.h"
#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"

namespace tremvik::cli {
namespace {

class Importar final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"importar", "Valida um arquivo e guarda as suas declarações",
            "Exemplos:\n"
            "  tremvik importar marco.txt\n"
            "  tremvik importar marco.txt --pasta /srv/tremvik --responder nao\n"
            "  tremvik importar marco.txt --json > marco.jsonl\n\n"
            "O arquivo entra inteiro ou não entra."};
  }

  void Declare(VerbOptions& options) override {
    options.Argument("ARQUIVO", arquivo_, "Arquivo Pré-Formatado", true);
    options.Folder(pasta);
    options.Responder(responder_);
    options.Json(json_, "Escreve cada evento como uma linha JSON");
  }

  ExitStatus Execute(const Terminal& terminal, Output& out, Output& err) override {
    const RunOptions options{
        .modo = Modo::kImportar, .pasta = pasta, .responder = responder_, .json = json_, .many = false};
    return Importer(options, terminal, out, err).Run(arquivo_);
  }

 private:
  std::string arquivo_;
  Answers responder_ = Answers::kAsk;
  bool json_ = false;
};

}  // namespace

std::unique_ptr<Verb> MakeImportar() { return std::make_unique<Importar>(); }

}  // namespace tremvik::cli
