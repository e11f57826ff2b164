#include "cli/portuguese_help.h"

namespace tremvik::cli {

PortugueseFormatter::PortugueseFormatter() {
  label("Positionals", "Argumentos");
  column_width(26);
}

std::string PortugueseFormatter::make_usage(const CLI::App* app, std::string name) const {
  std::string usage = "\nUso: " + name;
  for (const CLI::Option* option :
       app->get_options([](const CLI::Option* o) { return o->get_positional(); })) {
    usage += " " + make_option_usage(option);
  }
  if (!app->get_subcommands([](const CLI::App*) { return true; }).empty()) usage += " VERBO";
  return usage + " [OPÇÕES]\n";
}

std::string PortugueseFormatter::make_option_opts(const CLI::Option* option) const {
  const std::string& text = option->get_option_text();
  return text.empty() ? text : " " + text;
}

std::string InPortuguese(const CLI::ParseError& error) {
  std::string text = error.what();
  const std::string name = text.substr(0, text.find_first_of(": "));
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) return "falta " + name;
  if (dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    if (text.ends_with("flag override"))
      return "--" + name.substr(name.find_first_not_of('-')) + " não leva valor";
    return name.starts_with("-") ? name + " pede um valor" : "só um " + name + " de cada vez";
  }
  // The validators' own words are Portuguese already.
  if (dynamic_cast<const CLI::ValidationError*>(&error) != nullptr) return text;
  if (dynamic_cast<const CLI::ConversionError*>(&error) != nullptr)
    return "um valor não serve para a sua opção";
  return "a linha de comando não está certa";
}

}  // namespace tremvik::cli
