#include "cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <charconv>
#include <memory>
#include <optional>
#include <string_view>
#include <thread>

#include "adapters/local/component_folder.h"
#include "adapters/sqlite/declaration_store.h"
#include "cli/arguments.h"
#include "cli/portuguese_help.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

constexpr std::string_view kVersion = TREMVIK_VERSION;
constexpr const char* kOptions = "Opções";

template <typename T>
std::optional<T> Number(const std::string& text) {
  T number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

// An option whose value is a whole number from `least` to `greatest`.
template <typename T>
CLI::Option* AddNumber(CLI::App& verb, const std::string& name, T& target, T least, T greatest,
                       const std::string& description) {
  const auto set = [&target, least, greatest](const std::string& text) -> std::string {
    const auto number = Number<T>(text);
    if (!number || *number < least || *number > greatest) {
      return "o valor \"" + text::Visible(text) + "\" não é um número inteiro de " + std::to_string(least) +
             " a " + std::to_string(greatest);
    }
    target = *number;
    return {};
  };
  return verb.add_option(name)->check(CLI::Validator(set, ""))->description(description)->take_last();
}

// The parser of the whole command line. Its options write straight into `request`.
class Parser {
 public:
  Parser();
  std::variant<Request, Reply> Parse(const std::vector<std::string>& words);

 private:
  using Choice = std::pair<const CLI::App*, Verb>;

  void AddImportar();
  void AddValidar();
  void AddListar();
  void AddExemplo();
  void AddTabelas();

  CLI::App& AddVerb(CLI::App& parent, const char* name, const char* description, const char* examples);
  void AddFolder(CLI::App& verb);
  void AddAnswers(CLI::App& verb);
  void AddJson(CLI::App& verb, const char* description);

  std::string Complaint(const CLI::App& chosen);
  std::string ComplaintOfListar();

  Request request_;
  CLI::App app_{"tremvik valida e importa arquivos \"Pré-Formatado\" de declarações do ICMS.", "tremvik"};
  std::vector<Choice> verbs_;
  CLI::App* tabelas_ = nullptr;
};

Parser::Parser() {
  app_.formatter(std::make_shared<PortugueseFormatter>());
  app_.set_help_flag("-h,--help,--ajuda", "Mostra esta ajuda e termina")->group(kOptions);
  app_.set_version_flag("--versao", "", "Mostra a versão e termina")->group(kOptions);
  app_.require_subcommand(0, 1);
  app_.allow_extras();
  AddImportar();
  AddValidar();
  AddListar();
  AddExemplo();
  AddTabelas();
  app_.footer(
      "Exemplos:\n"
      "  tremvik exemplo --saida exemplo.txt   faz um arquivo válido para experimentar\n"
      "  tremvik importar exemplo.txt          valida e guarda as declarações\n"
      "  tremvik validar *.txt                 valida vários arquivos sem guardar nada\n"
      "  tremvik importar --help               ajuda de um verbo\n\n"
      "As opções valem antes e depois do verbo.\n"
      "Saída: 0 aceito, 1 recusado, 2 uso errado ou algo falta na máquina,\n"
      "3 falha do programa.");
}

CLI::App& Parser::AddVerb(CLI::App& parent, const char* name, const char* description, const char* examples) {
  CLI::App* verb = parent.add_subcommand(name, description)->group("Verbos");
  verb->set_version_flag("--versao", "", "Mostra a versão e termina")->group(kOptions);
  verb->get_help_ptr()->group(kOptions);
  verb->allow_extras();
  verb->footer(examples);
  return *verb;
}

void Parser::AddFolder(CLI::App& verb) {
  verb.add_option("--pasta", request_.pasta,
                  "Pasta das declarações guardadas e das tabelas;\ncriada se não existe")
      ->option_text("DIR")
      ->group(kOptions)
      ->take_last();
}

void Parser::AddAnswers(CLI::App& verb) {
  const auto set = [this](const std::string& text) -> std::string {
    if (text != "sim" && text != "nao" && text != "não")
      return "o valor é sim ou nao, e não \"" + text::Visible(text) + "\"";
    request_.responder = text == "sim" ? Answers::kYes : Answers::kNo;
    return {};
  };
  verb.add_option("--responder")
      ->check(CLI::Validator(set, ""))
      ->description("Resposta às perguntas \"Deseja continuar\";\nsem terminal e sem esta opção é Não")
      ->option_text("sim|nao")
      ->group(kOptions)
      ->take_last();
}

void Parser::AddJson(CLI::App& verb, const char* description) {
  verb.add_flag("--json", request_.json, description)->disable_flag_override()->group(kOptions);
}

void Parser::AddImportar() {
  CLI::App& verb = AddVerb(app_, "importar", "Valida um arquivo e guarda as suas declarações",
                           "Exemplos:\n"
                           "  tremvik importar marco.txt\n"
                           "  tremvik importar marco.txt --pasta /srv/tremvik --responder nao\n"
                           "  tremvik importar marco.txt --json > marco.jsonl\n\n"
                           "O arquivo entra inteiro ou não entra.");
  verb.add_option("ARQUIVO", request_.arquivos, "Arquivo Pré-Formatado")
      ->required()
      ->expected(1)
      ->group(kOptions);
  AddFolder(verb);
  AddAnswers(verb);
  AddJson(verb, "Escreve cada acontecimento como uma linha JSON");
  verbs_.emplace_back(&verb, Verb::kImportar);
}

void Parser::AddValidar() {
  CLI::App& verb = AddVerb(app_, "validar", "Valida arquivos como na importação, sem guardar nada",
                           "Exemplos:\n"
                           "  tremvik validar marco.txt\n"
                           "  tremvik validar entrada/*.txt --responder nao\n"
                           "  find entrada -name '*.txt' -print0 | tremvik validar -0 - --json\n\n"
                           "Com vários arquivos nada é perguntado: sem --responder a resposta é Não. Os\n"
                           "resultados saem na ordem dos nomes, e o código de saída é o do pior arquivo.");
  verb.add_option("ARQUIVO", request_.arquivos,
                  "Arquivos Pré-Formatado; - lê os nomes da entrada\npadrão, um por linha")
      ->required()
      ->expected(-1)
      ->group(kOptions);
  AddFolder(verb);
  AddAnswers(verb);
  AddJson(verb, "Escreve cada acontecimento como uma linha JSON");
  verb.add_flag("-0,--nulo", request_.nulo, "Os nomes da entrada padrão são separados por NUL")
      ->disable_flag_override()
      ->group(kOptions);
  request_.paralelo = std::max(1U, std::thread::hardware_concurrency());
  AddNumber(verb, "--paralelo", request_.paralelo, 1U, 256U,
            "Arquivos ao mesmo tempo; o normal é um por núcleo")
      ->option_text("N")
      ->group(kOptions);
  verbs_.emplace_back(&verb, Verb::kValidar);
}

void Parser::AddListar() {
  CLI::App& verb = AddVerb(app_, "listar", "Mostra as declarações guardadas",
                           "Exemplos:\n"
                           "  tremvik listar\n"
                           "  tremvik listar 110.042.490.114\n"
                           "  tremvik listar 110042490114 03/2012      mostra os registros da declaração\n"
                           "  tremvik listar --json");
  verb.add_option("IE", request_.ie, "Inscrição estadual, com ou sem pontos")->group(kOptions);
  verb.add_option("REFERENCIA", request_.referencia, "Mês: AAAAMM, AAAA-MM ou MM/AAAA")->group(kOptions);
  AddFolder(verb);
  AddJson(verb, "Escreve um objeto JSON por linha");
  verbs_.emplace_back(&verb, Verb::kListar);
}

void Parser::AddExemplo() {
  CLI::App& verb = AddVerb(app_, "exemplo", "Faz um arquivo válido com todos os tipos de registro",
                           "Exemplos:\n"
                           "  tremvik exemplo --saida exemplo.txt\n"
                           "  tremvik exemplo --declaracoes 200 --semente 7 --saida grande.txt\n\n"
                           "A mesma semente dá sempre o mesmo arquivo.");
  AddNumber(verb, "--declaracoes", request_.exemplo.declaracoes, 1, 9999,
            "Quantas declarações; o normal são doze")
      ->option_text("N")
      ->group(kOptions);
  AddNumber(verb, "--registros", request_.exemplo.registros, 1, 99'999,
            "Quantos registros (linhas) exatamente")
      ->option_text("N")
      ->group(kOptions);
  AddNumber<std::uint64_t>(verb, "--semente", request_.exemplo.seed, 0, UINT64_MAX,
                           "Semente do sorteio; o normal é 1")
      ->option_text("S")
      ->group(kOptions);
  verb.add_flag("--duvida", request_.exemplo.duvida, "Com um imposto que faz a importação perguntar")
      ->disable_flag_override()
      ->group(kOptions);
  verb.add_option("--saida", request_.saida, "Arquivo a escrever; sem ela, a saída padrão")
      ->option_text("ARQUIVO")
      ->group(kOptions)
      ->take_last();
  verb.add_flag("--sobrescrever", request_.sobrescrever, "Troca o arquivo de --saida se ele já existe")
      ->disable_flag_override()
      ->group(kOptions);
  verbs_.emplace_back(&verb, Verb::kExemplo);
}

void Parser::AddTabelas() {
  tabelas_ = &AddVerb(app_, "tabelas", "Constrói ou verifica o banco das tabelas de referência",
                      "Exemplos:\n"
                      "  tremvik tabelas construir --dados minhas-tabelas tblFixas.fix\n"
                      "  tremvik tabelas verificar tblFixas.fix\n\n"
                      "A importação usa o arquivo tblFixas.fix da sua pasta (--pasta).");
  tabelas_->require_subcommand(0, 1);
  CLI::App& build = AddVerb(*tabelas_, "construir", "Constrói o banco a partir de arquivos CSV",
                            "Exemplos:\n"
                            "  tremvik tabelas construir tblFixas.fix\n"
                            "  tremvik tabelas construir --dados minhas-tabelas tblFixas.fix");
  build
      .add_option("ARQUIVO", request_.arquivos,
                  "Banco a escrever (tblFixas.fix); só é trocado\nse tudo está certo")
      ->required()
      ->expected(1)
      ->group(kOptions);
  build.add_option("--dados", request_.dados, "Pasta dos arquivos CSV; sem ela, as linhas do programa")
      ->option_text("DIR")
      ->group(kOptions)
      ->take_last();
  verbs_.emplace_back(&build, Verb::kConstruirTabelas);
  CLI::App& check = AddVerb(*tabelas_, "verificar", "Diz o que falta ou está errado em um banco",
                            "Exemplo:\n  tremvik tabelas verificar ~/.local/share/tremvik/tblFixas.fix");
  check.add_option("ARQUIVO", request_.arquivos, "Banco a verificar")
      ->required()
      ->expected(1)
      ->group(kOptions);
  verbs_.emplace_back(&check, Verb::kVerificarTabelas);
}

std::string Parser::ComplaintOfListar() {
  const std::string ie = request_.ie;
  const std::string referencia = request_.referencia;
  request_.ie = NormalizarIE(ie);
  request_.referencia = NormalizarReferencia(referencia);
  if (!ie.empty() && request_.ie.empty()) {
    return "\"" + text::Visible(ie) +
           "\" não é uma inscrição estadual: são doze algarismos, com ou sem pontos";
  }
  if (!referencia.empty() && request_.referencia.empty()) {
    return "\"" + text::Visible(referencia) + "\" não é uma referência: use AAAAMM, AAAA-MM ou MM/AAAA";
  }
  return {};
}

// What is wrong although every name is known; empty when nothing is.
std::string Parser::Complaint(const CLI::App& chosen) {
  if (&chosen == &app_) return "falta o verbo: importar, validar, listar, exemplo ou tabelas";
  if (&chosen == tabelas_) return "falta dizer o que fazer com as tabelas: construir ou verificar";
  for (const std::string& extra : chosen.remaining()) {
    if (extra != "--") return "o argumento \"" + text::Visible(extra) + "\" sobra";
  }
  request_.verb = std::ranges::find(verbs_, &chosen, &Choice::first)->second;
  const CLI::Option* folder = chosen.get_option_no_throw("--pasta");
  if (folder != nullptr && folder->count() > 0 && request_.pasta.empty()) return "--pasta pede uma pasta";
  if (folder != nullptr && folder->count() == 0) {
    const std::string home = DataHome();
    if (home.empty()) return "não há pasta de usuário (HOME); escolha uma pasta com --pasta";
    request_.pasta = home + "/tremvik";
  }
  return request_.verb == Verb::kListar ? ComplaintOfListar() : std::string();
}

std::variant<Request, Reply> Parser::Parse(const std::vector<std::string>& words) {
  if (words.empty()) return Reply{ExitStatus::kEnvironment, "", app_.help()};
  Arguments arguments = Arrange(app_, words);
  std::string complaint = std::move(arguments.complaint);
  try {
    if (complaint.empty()) {
      std::ranges::reverse(arguments.words);  // as the parser takes them
      app_.parse(std::move(arguments.words));
      complaint = Complaint(*arguments.verb);
    }
    if (complaint.empty()) return request_;
  } catch (const CLI::CallForVersion&) {
    return Reply{ExitStatus::kAccepted, "tremvik " + std::string(kVersion) + "\n", ""};
  } catch (const CLI::CallForHelp&) {
    return Reply{ExitStatus::kAccepted, app_.help(), ""};
  } catch (const CLI::ParseError& error) {
    complaint = InPortuguese(error);
  }
  std::string call = "tremvik";
  if (arguments.verb->get_parent() == tabelas_) call += " tabelas";
  if (arguments.verb != &app_) call += " " + arguments.verb->get_name();
  return Reply{ExitStatus::kEnvironment, "", "tremvik: " + complaint + ". Veja: " + call + " --help\n"};
}

}  // namespace

std::variant<Request, Reply> ParseCommandLine(int argc, const char* const* argv) {
  return Parser().Parse({argv + std::min(argc, 1), argv + argc});
}

}  // namespace tremvik::cli
