#include "cli/portuguese_help.h"

#include <algorithm>
#include <string_view>

#include "text/readable.h"

namespace tremvik::cli {
namespace {

constexpr std::size_t kColumn = 26;  // where the descriptions begin
constexpr std::size_t kNarrow = 56;  // below, they have lines of their own
constexpr std::size_t kNarrowColumn = 6;

std::string Lines(const std::string& text, std::size_t width, std::size_t margin) {
  std::string out;
  for (const std::string& line : text::Wrap(text, width - margin))
    out.append(margin, ' ').append(line).append("\n");
  return out;
}

// An example that is too wide has what it does on the next line.
std::string Example(const std::string& line, std::size_t width) {
  const auto end = line.find_last_not_of(' ', line.rfind("  "));
  if (text::Cells(line) <= width || end == std::string::npos) return line + "\n";
  const auto words = line.find_first_not_of(' ', end + 1);
  return line.substr(0, end + 1) + "\n" + Lines(line.substr(words), width, kNarrowColumn);
}

}  // namespace

PortugueseFormatter::PortugueseFormatter(std::size_t width) : width_(width) {
  label("Positionals", "Argumentos");
}

std::string PortugueseFormatter::make_description(const CLI::App* app) const {
  return Lines(app->get_description(), width_, 0);
}

std::string PortugueseFormatter::Entry(const std::string& name, const std::string& description) const {
  const std::size_t column = width_ < kNarrow ? kNarrowColumn : kColumn;
  std::string out = "  " + name;
  std::string lines = Lines(description, width_, column);
  const std::size_t cells = text::Cells(out);
  if (cells + 2 > column) return out + "\n" + lines;
  return out + lines.substr(cells);
}

std::string PortugueseFormatter::make_option(const CLI::Option* option, bool is_positional) const {
  return Entry(make_option_name(option, is_positional) + make_option_opts(option), option->get_description());
}

std::string PortugueseFormatter::make_subcommand(const CLI::App* verb) const {
  return Entry(verb->get_name(), verb->get_description());
}

// Lines that begin with a blank are examples; others are paragraphs, parted by empty lines.
std::string PortugueseFormatter::make_footer(const CLI::App* app) const {
  std::string out;
  std::string paragraph;
  const auto end_paragraph = [&] {
    if (!paragraph.empty()) out += Lines(paragraph, width_, 0);
    paragraph.clear();
  };
  const std::string footer = app->get_footer();
  for (std::string_view rest = footer; !rest.empty();) {
    const std::string line(rest.substr(0, rest.find('\n')));
    rest.remove_prefix(std::min(rest.size(), line.size() + 1));
    const bool is_text = !line.empty() && !line.starts_with(' ');
    if (is_text) paragraph.append(paragraph.empty() ? "" : " ").append(line);
    if (!is_text || line.ends_with(':')) end_paragraph();
    if (!is_text) out += Example(line, width_);
  }
  end_paragraph();
  return out;
}

std::string PortugueseFormatter::make_usage(const CLI::App* app, std::string name) const {
  std::string usage = "\nUso: " + name;
  for (const CLI::Option* option :
       app->get_options([](const CLI::Option* o) { return o->get_positional(); })) {
    usage += " " + make_option_usage(option);
  }
  if (!app->get_subcommands([](const CLI::App*) { return true; }).empty()) usage += " VERBO";
  usage += " [OPÇÕES]";
  return "\n" + Lines(usage.substr(1), width_, 0);
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
