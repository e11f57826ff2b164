#include <algorithm>
#include <thread>

#include "cli/file_names.h"
#include "cli/importer.h"
#include "cli/many_files.h"
#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"

namespace tremvik::cli {
namespace {

class Validar final : public Verb {
 public:
  [[nodiscard]] VerbTexts Texts() const override {
    return {"validar", "Valida arquivos como na importação, sem guardar nada",
            "Exemplos:\n"
            "  tremvik validar marco.txt\n"
            "  tremvik validar entrada/*.txt --responder nao\n"
            "  find entrada -name '*.txt' -print0 | tremvik validar -0 - --json\n\n"
            "Com vários arquivos nada é perguntado: sem --responder a resposta é Não. Os\n"
            "resultados saem na ordem dos nomes, e o código de saída é o do pior arquivo."};
  }

  void Declare(VerbOptions& options) override {
    options.Arguments("ARQUIVO", arquivos_,
                      "Arquivos Pré-Formatado; - lê os nomes da entrada\npadrão, um por linha");
    options.Folder(pasta);
    options.Responder(responder_);
    options.Json(json_, "Escreve cada acontecimento como uma linha JSON");
    options.Flag("-0,--nulo", nulo_, "Os nomes da entrada padrão são separados por NUL");
    options.Number("--paralelo", paralelo_, 1U, 256U, "N",
                   "Arquivos ao mesmo tempo; o normal é um por núcleo");
  }

  ExitStatus Execute(const Terminal& terminal, Output& out, Output& err) override {
    RunOptions options{
        .modo = Modo::kValidar, .pasta = pasta, .responder = responder_, .json = json_, .many = false};
    const bool from_input = std::ranges::find(arquivos_, "-") != arquivos_.end();
    if (!from_input && arquivos_.size() == 1) {
      return Importer(options, terminal, out, err).Run(arquivos_.front());
    }
    options.many = true;
    unsigned workers = paralelo_;
    if (!from_input) workers = std::min(workers, static_cast<unsigned>(arquivos_.size()));
    FileNames names(arquivos_, nulo_ ? '\0' : '\n');
    return ValidateMany(names, options, terminal, workers, out, err);
  }

 private:
  std::vector<std::string> arquivos_;
  Answers responder_ = Answers::kAsk;
  bool json_ = false;
  bool nulo_ = false;  ///< names on standard input are parted by NUL
  unsigned paralelo_ = std::max(1U, std::thread::hardware_concurrency());
};

}  // namespace

std::unique_ptr<Verb> MakeValidar() { return std::make_unique<Validar>(); }

}  // namespace tremvik::cli
