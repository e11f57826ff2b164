#include "cli/console.h"

#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "cli/message_box.h"
#include "runtime/text.h"
#include "text/folding.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

// One line of standard input without its end; false at the end of the input.
bool ReadAnswer(std::string& answer) {
  answer.clear();
  char c = 0;
  while (read(STDIN_FILENO, &c, 1) == 1) {
    if (c == '\n') return true;
    answer += c;
  }
  return false;
}

}  // namespace

void Console::Begin(std::string path) {
  path_ = std::move(path);
  held_.clear();
  faults_.clear();
  told_.clear();
}

void Console::Note(const FaultLocation& where, FindingKind tipo) {
  faults_.emplace_back(where);
  Finding& finding = told_.emplace_back();
  finding.regra = where.regra;
  finding.tipo = tipo;
}

void Console::End(bool shows_last) {
  if (shows_last) out_.Write(held_);
  held_.clear();
}

int Console::MsgBox(std::string_view text, int style, std::string_view title) {
  const bool question = (style & estilo::kSimNao) != 0;
  const bool asks_user = question && options_.responder == Answers::kAsk && options_.interactive;
  bar_.Clear();
  if (options_.show) {
    out_.Write(held_);
    held_ = Rendered(text, style, title);
  } else if (asks_user) {
    err_.Write(Rendered(text, style, title));
  }
  faults_.clear();
  if (!question) return resposta::kOk;
  End(true);
  return Ask();
}

std::string Console::Rendered(std::string_view text, int style, std::string_view title) const {
  std::string out = RenderBox(text, style, title, {options_.framed, options_.colour, options_.width});
  for (const auto& fault : faults_)
    out += "\n" + RenderFault(fault, path_, text, {options_.colour, options_.width});
  return out;
}

int Console::Ask() {
  const auto given = [this](int answer, std::string_view reason) {
    const std::string_view name = answer == resposta::kSim ? "Sim" : "Não";
    if (options_.show) out_.Write(fmt::format("Resposta: {} ({})\n", name, reason));
    return answer;
  };
  if (options_.responder == Answers::kYes) return given(resposta::kSim, "--responder sim");
  if (options_.responder == Answers::kNo) return given(resposta::kNao, "--responder nao");
  if (options_.interactive) return AskUser(options_.show ? out_ : err_);
  const std::string_view reason =
      options_.many ? "com vários arquivos nada é perguntado" : "não há terminal para perguntar";
  err_.Write(fmt::format("tremvik: {}: {}, e a resposta foi Não; --responder sim responde Sim.\n",
                         text::Visible(path_), reason));
  return given(resposta::kNao, options_.many ? "vários arquivos" : "sem terminal");
}

int Console::AskUser(Output& to) {
  for (std::string answer;;) {
    to.Write("Sim/Não [Não]: ");
    to.Flush();
    const bool answered = ReadAnswer(answer);
    const bool is_empty = Trim(answer, " \t\r").empty();
    answer = text::Folded(answer);
    if (answer == "s" || answer == "sim") return resposta::kSim;
    if (!answered) to.Write("\n");
    if (!answered || is_empty || answer == "n" || answer == "nao") return resposta::kNao;
    to.Write("Responda sim ou não.\n");
  }
}

}  // namespace tremvik::cli
