#include "cli/command_line.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include "adapters/local/component_folder.h"
#include "cli/arguments.h"
#include "cli/portuguese_help.h"
#include "cli/terminal.h"
#include "cli/verb_options.h"
#include "cli/verbs/verbs.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

constexpr std::string_view kVersion = TREMVIK_VERSION;

constexpr const char* kFooter =
    "Exemplos:\n"
    "  tremvik exemplo --saida exemplo.txt   gera um arquivo válido para experimentar\n"
    "  tremvik importar exemplo.txt          valida e guarda as declarações\n"
    "  tremvik validar *.txt                 valida vários arquivos sem guardar nada\n"
    "  tremvik explicar CR10-11              explica uma regra ou uma mensagem\n"
    "  tremvik ajuda importar                ajuda de um verbo\n\n"
    "As opções valem antes e depois do verbo.\n\n"
    "Código de saída: 0 aceito, 1 recusado, 2 uso incorreto ou problema no ambiente, 3 falha do programa.";

// "importar, validar ou listar".
std::string NamesOf(const CLI::App& app) {
  std::string names;
  const auto verbs = app.get_subcommands([](const CLI::App*) { return true; });
  for (const CLI::App* verb : verbs) {
    if (!names.empty()) names += verb == verbs.back() ? " ou " : ", ";
    names += verb->get_name();
  }
  return names;
}

// Help is written for 80 cells, and for a narrower or somewhat wider terminal as it is.
std::size_t WidthOfHelp() {
  constexpr std::size_t kUsual = 80;
  constexpr std::size_t kWidest = 100;
  const std::size_t columns = ColumnsOf(STDOUT_FILENO);
  return columns == 0 ? kUsual : std::min(columns, kWidest);
}

// The words of a call for help as options ask for it.
std::vector<std::string> WithHelpAsOption(std::vector<std::string> words) {
  if (words.empty() || (words.front() != kHelpVerb && words.front() != "help")) return words;
  words.erase(words.begin());
  words.emplace_back("--help");
  return words;
}

// The parser of the whole command line. The options write straight into the verbs.
class Parser {
 public:
  Parser();
  std::variant<std::unique_ptr<Verb>, Reply> Parse(const std::vector<std::string>& words);
  [[nodiscard]] const CLI::App& app() const { return app_; }

 private:
  struct Choice {
    const CLI::App* app;
    std::unique_ptr<Verb> verb;
  };

  void Add(std::unique_ptr<Verb> verb);
  CLI::App& AddApp(CLI::App& parent, const std::string& name, const VerbTexts& texts);
  std::string Complaint(const CLI::App& chosen);
  std::string ComplaintOfFolder(const CLI::App& chosen, Verb& verb) const;

  CLI::App app_{"tremvik valida e importa arquivos \"Pré-Formatado\" de declarações do ICMS.", "tremvik"};
  std::vector<Choice> choices_;
  std::unique_ptr<Verb> chosen_;
};

Parser::Parser() {
  app_.formatter(std::make_shared<PortugueseFormatter>(WidthOfHelp()));
  app_.set_help_flag("-h,--help,--ajuda", "Mostra esta ajuda e termina")->group(kOptionsGroup);
  app_.set_version_flag("--versao,--version", "", "Mostra a versão e termina")->group(kOptionsGroup);
  app_.require_subcommand(0, 1);
  app_.allow_extras();
  for (auto& verb : MakeVerbs())
    Add(std::move(verb));
  app_.footer(kFooter);
}

CLI::App& Parser::AddApp(CLI::App& parent, const std::string& name, const VerbTexts& texts) {
  CLI::App* app = parent.add_subcommand(name, texts.description)->group("Verbos");
  app->set_version_flag("--versao,--version", "", "Mostra a versão e termina")->group(kOptionsGroup);
  app->get_help_ptr()->group(kOptionsGroup);
  app->allow_extras();
  app->footer(texts.examples);
  return *app;
}

void Parser::Add(std::unique_ptr<Verb> verb) {
  const VerbTexts texts = verb->Texts();
  const std::string name = texts.name;
  const auto blank = name.find(' ');
  CLI::App* parent = &app_;
  if (blank != std::string::npos) {
    const VerbTexts group = GroupTexts(name.substr(0, blank));
    const auto known = app_.get_subcommands([&](CLI::App* app) { return app->get_name() == group.name; });
    parent = known.empty() ? &AddApp(app_, group.name, group) : known.front();
    parent->require_subcommand(0, 1);
  }
  CLI::App& app = AddApp(*parent, blank == std::string::npos ? name : name.substr(blank + 1), texts);
  VerbOptions options(app);
  verb->Declare(options);
  choices_.push_back({&app, std::move(verb)});
}

// The user's own folder, where none was named.
std::string Parser::ComplaintOfFolder(const CLI::App& chosen, Verb& verb) const {
  const CLI::Option* folder = chosen.get_option_no_throw("--pasta");
  if (folder == nullptr) return {};
  if (folder->count() > 0) return verb.pasta.empty() ? "--pasta pede uma pasta" : "";
  const std::string home = DataHome();
  if (home.empty()) return "não há pasta de usuário (HOME); escolha uma pasta com --pasta";
  verb.pasta = home + "/tremvik";
  return {};
}

// What is wrong although every name is known; empty when nothing is.
std::string Parser::Complaint(const CLI::App& chosen) {
  const auto choice = std::ranges::find(choices_, &chosen, &Choice::app);
  if (choice == choices_.end()) {
    if (&chosen == &app_) return "falta o verbo: " + NamesOf(app_);
    return "falta dizer o que fazer com as " + chosen.get_name() + ": " + NamesOf(chosen);
  }
  for (const std::string& extra : chosen.remaining()) {
    if (extra == "--") continue;
    const auto arguments =
        chosen.get_options([](const CLI::Option* option) { return option->get_positional(); });
    if (arguments.size() == 1) return "só um " + arguments.front()->get_name() + " de cada vez";
    return "o argumento " + text::InQuotes(extra) + " sobra";
  }
  chosen_ = std::move(choice->verb);
  std::string complaint = ComplaintOfFolder(chosen, *chosen_);
  return complaint.empty() ? chosen_->Complaint() : complaint;
}

std::variant<std::unique_ptr<Verb>, Reply> Parser::Parse(const std::vector<std::string>& words) {
  if (words.empty()) return Reply{ExitStatus::kEnvironment, "", app_.help()};
  Arguments arguments = Arrange(app_, words);
  std::string complaint = std::move(arguments.complaint);
  try {
    if (complaint.empty()) {
      std::ranges::reverse(arguments.words);  // as the parser takes them
      app_.parse(std::move(arguments.words));
      complaint = Complaint(*arguments.verb);
    }
    if (complaint.empty()) return std::move(chosen_);
  } catch (const CLI::CallForVersion&) {
    return Reply{ExitStatus::kAccepted, "tremvik " + std::string(kVersion) + "\n", ""};
  } catch (const CLI::CallForHelp&) {
    return Reply{ExitStatus::kAccepted, app_.help(), ""};
  } catch (const CLI::ParseError& error) {
    complaint = InPortuguese(error);
  }
  std::string call = arguments.verb == &app_ ? "" : " " + arguments.verb->get_name();
  const CLI::App* group = arguments.verb->get_parent();
  if (group != nullptr && group != &app_) call = " " + group->get_name() + call;
  return Reply{ExitStatus::kEnvironment, "",
               "tremvik: " + complaint + ". Veja: tremvik" + call + " --help\n"};
}

}  // namespace

std::variant<std::unique_ptr<Verb>, Reply> ParseCommandLine(int argc, const char* const* argv) {
  return Parser().Parse(WithHelpAsOption({argv + std::min(argc, 1), argv + argc}));
}

void WithCommandLine(const std::function<void(const CLI::App&)>& look) { look(Parser().app()); }

}  // namespace tremvik::cli
