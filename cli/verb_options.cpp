#include "cli/verb_options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <optional>
#include <utility>

#include "cli/portuguese_help.h"
#include "text/folding.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

std::optional<std::uint64_t> WholeNumber(const std::string& text) {
  std::uint64_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

std::string DidYouMean(std::string_view word, std::span<const std::string> names) {
  const std::string_view nearest = text::Nearest(word, names);
  return nearest.empty() ? std::string() : " (quis dizer " + text::InQuotes(nearest) + "?)";
}

void VerbOptions::Argument(const char* name, std::string& target, const char* description, bool required) {
  verb_.add_option(name, target, description)->required(required)->group(kOptionsGroup);
}

void VerbOptions::Arguments(const char* name, std::vector<std::string>& target, const char* description) {
  verb_.add_option(name, target, description)->required()->expected(-1)->group(kOptionsGroup);
}

void VerbOptions::Text(const char* name, std::string& target, const char* value, const char* description) {
  verb_.add_option(name, target, description)->option_text(value)->group(kOptionsGroup)->take_last();
}

void VerbOptions::Flag(const char* name, bool& target, const char* description) {
  verb_.add_flag(name, target, description)->disable_flag_override()->group(kOptionsGroup);
}

void VerbOptions::Judged(const char* name, std::function<std::string(const std::string&)> take,
                         const char* value, const char* description) {
  const auto judge = [take = std::move(take)](const std::string& text) { return take(text); };
  verb_.add_option(name)
      ->check(CLI::Validator(judge, ""))
      ->description(description)
      ->option_text(value)
      ->group(kOptionsGroup)
      ->take_last();
}

void VerbOptions::AddNumber(const char* name, const Range& range, std::function<void(std::uint64_t)> take,
                            const char* value, const char* description) {
  const auto judge = [range, take = std::move(take)](const std::string& text) -> std::string {
    const auto number = WholeNumber(text);
    if (!number || *number < range.least || *number > range.greatest) {
      return "o valor " + text::InQuotes(text) + " não é um número inteiro de " +
             std::to_string(range.least) + " a " + std::to_string(range.greatest);
    }
    take(*number);
    return {};
  };
  Judged(name, judge, value, description);
}

void VerbOptions::Folder(std::string& target) {
  Text("--pasta", target, "DIR", "Pasta das declarações guardadas e das tabelas; criada se não existir");
}

void VerbOptions::Responder(Answers& target) {
  const auto take = [&target](const std::string& text) -> std::string {
    const std::string answer = text::Folded(text);
    const bool yes = answer == "sim" || answer == "s";
    if (!yes && answer != "nao" && answer != "n")
      return "o valor é sim ou nao, e não " + text::InQuotes(text);
    target = yes ? Answers::kYes : Answers::kNo;
    return {};
  };
  Judged("--responder", take, "sim|nao",
         "Resposta às perguntas \"Deseja continuar\"; sem terminal e sem esta opção é Não");
}

void VerbOptions::Json(bool& target, const char* description) { Flag("--json", target, description); }

}  // namespace tremvik::cli
