// Writes what the system's own tools show of the command line, all of it from the verbs' own declarations:
// manual pages (scdoc) and completions for bash, zsh and fish. usage: cli_pages FOLDER VERSION
#include <CLI/CLI.hpp>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "cli/command_line.h"

namespace {

std::vector<const CLI::App*> VerbsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<const CLI::Option*> OptionsOf(const CLI::App& app, bool positional) {
  return app.get_options(
      [positional](const CLI::Option* one) { return one->get_positional() == positional; });
}

// "-0", "--nulo", each with its dashes.
std::vector<std::string> NamesOf(const CLI::Option& option) {
  std::vector<std::string> names;
  for (const std::string& name : option.get_snames())
    names.push_back("-" + name);
  for (const std::string& name : option.get_lnames())
    names.push_back("--" + name);
  return names;
}

std::string OneLine(std::string text) {
  for (char& c : text) {
    if (c == '\n') c = ' ';
  }
  return text;
}

// A verb with its words: "tabelas construir".
struct Page {
  const CLI::App* app;
  std::string words;
};

std::vector<Page> PagesOf(const CLI::App& app, const std::string& before = "") {
  std::vector<Page> pages;
  for (const CLI::App* verb : VerbsOf(app)) {
    const std::string words = before + verb->get_name();
    pages.push_back({verb, words});
    const auto below = PagesOf(*verb, words + " ");
    pages.insert(pages.end(), below.begin(), below.end());
  }
  return pages;
}

std::string Replaced(std::string text, std::string_view from, std::string_view to) {
  for (auto at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size()))
    text.replace(at, from.size(), to);
  return text;
}

// ---- manual pages ----

std::string Escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    if (std::string_view("\\_*<>~`#[]|").find(c) != std::string_view::npos) out += '\\';
    out += c;
  }
  return out;
}

// The examples as they are typed, and the paragraphs behind them.
void WriteFooter(const std::string& footer, std::ostream& out) {
  std::istringstream lines(footer);
  std::string examples;
  std::string words;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("  ")) {
      examples += line.substr(2) + "\n";
    } else if (!line.starts_with("Exemplo") && !(line.empty() && words.empty())) {
      words += Escaped(line) + "\n";
    }
  }
  if (!words.empty()) out << "# NOTAS\n\n" << words << "\n";
  if (!examples.empty()) out << "# EXEMPLOS\n\n```\n" << examples << "```\n\n";
}

void WriteOptions(const CLI::App& app, std::ostream& out) {
  for (const CLI::Option* option : OptionsOf(app, true)) {
    out << "_" << Escaped(option->get_name()) << "_\n\t" << Escaped(OneLine(option->get_description()))
        << "\n\n";
  }
  for (const CLI::Option* option : OptionsOf(app, false)) {
    std::string names;
    for (const std::string& name : NamesOf(*option))
      names += (names.empty() ? "*" : ", *") + Escaped(name) + "*";
    if (!option->get_option_text().empty()) names += " _" + Escaped(option->get_option_text()) + "_";
    out << names << "\n\t" << Escaped(OneLine(option->get_description())) << "\n\n";
  }
}

std::string Synopsis(const CLI::App& app, const std::string& words) {
  std::string line = "*tremvik*" + (words.empty() ? "" : " *" + Replaced(words, " ", "* *") + "*");
  for (const CLI::Option* option : OptionsOf(app, true)) {
    const std::string name =
        "_" + Escaped(option->get_name()) + "_" + (option->get_items_expected_max() > 1 ? "..." : "");
    line += option->get_required() ? " " + name : " \\[" + name + "\\]";
  }
  return line + " \\[_OPÇÕES_\\]";
}

void WriteManual(const CLI::App& root, const Page& page, const std::string& version, std::ostream& out) {
  const std::string name = "tremvik" + (page.words.empty() ? "" : "-" + Replaced(page.words, " ", "-"));
  out << name << "(1) \"tremvik " << version << "\" \"Comandos do usuário\"\n\n# NOME\n\n"
      << name << " - " << Escaped(OneLine(page.app->get_description())) << "\n\n# SINOPSE\n\n";
  const auto verbs = PagesOf(root);
  if (page.words.empty()) {
    for (const Page& verb : verbs) {
      if (!VerbsOf(*verb.app).empty()) continue;
      out << Synopsis(*verb.app, verb.words) << (verb.app == verbs.back().app ? "\n\n" : "++\n");
    }
  } else {
    out << Synopsis(*page.app, page.words) << "\n\n";
  }
  if (!VerbsOf(*page.app).empty()) {
    out << "# VERBOS\n\n";
    for (const CLI::App* verb : VerbsOf(*page.app))
      out << "*" << verb->get_name() << "*\n\t" << Escaped(verb->get_description()) << "\n\n";
  }
  out << "# OPÇÕES\n\n";
  WriteOptions(*page.app, out);
  WriteFooter(page.app->get_footer(), out);
  if (!page.words.empty()) {
    out << "# VEJA TAMBÉM\n\n*tremvik*(1)\n";
  } else {
    out << "# VEJA TAMBÉM\n\n";
    for (const Page& verb : verbs) {
      out << (&verb == &verbs.front() ? "*" : ", *") << "tremvik-" << Replaced(verb.words, " ", "-")
          << "*(1)";
    }
    out << "\n";
  }
}

// ---- completions ----

// What stands behind an option: folders, files, some words, or nothing that could be told.
enum class Value { kNone, kFolder, kFile, kWords, kAnything };

Value ValueOf(const CLI::Option& option) {
  const std::string& text = option.get_option_text();
  if (option.get_items_expected_max() == 0) return Value::kNone;
  if (text == "DIR") return Value::kFolder;
  if (text == "ARQUIVO" || text == "F") return Value::kFile;
  return text.find('|') == std::string::npos ? Value::kAnything : Value::kWords;
}

std::string Words(const CLI::App& app) {
  std::string words;
  for (const CLI::App* verb : VerbsOf(app))
    words += verb->get_name() + " ";
  for (const CLI::Option* option : OptionsOf(app, false)) {
    for (const std::string& name : NamesOf(*option))
      words += name + " ";
  }
  if (!words.empty()) words.pop_back();
  return words;
}

bool TakesFiles(const CLI::App& app) {
  for (const CLI::Option* option : OptionsOf(app, true)) {
    if (option->get_name().starts_with("ARQUIVO")) return true;
  }
  return false;
}

void WriteBash(const CLI::App& root, std::ostream& out) {
  out << "# Completion of tremvik(1) for bash; made from the program's own verbs and options.\n_tremvik() {\n"
         "  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} verb='' words='' files='' i\n"
         "  for ((i = 1; i < COMP_CWORD; ++i)); do\n    case \"$verb ${COMP_WORDS[i]}\" in\n";
  for (const Page& page : PagesOf(root)) {
    const auto blank = page.words.find(' ');
    const std::string pattern = blank == std::string::npos ? " " + page.words : page.words;
    out << "      '" << pattern << "') verb='" << page.words << "' ;;\n";
  }
  out << "    esac\n  done\n  case \"$verb:$prev\" in\n";
  auto pages = PagesOf(root);
  pages.push_back({&root, ""});
  for (const Page& page : pages) {
    for (const CLI::Option* option : OptionsOf(*page.app, false)) {
      const Value value = ValueOf(*option);
      if (value == Value::kNone) continue;
      std::string names;
      for (const std::string& name : NamesOf(*option))
        names += (names.empty() ? "'" : " | '") + page.words + ":" + name + "'";
      out << "    " << names << ")\n";
      if (value == Value::kFolder) out << "      mapfile -t COMPREPLY < <(compgen -d -- \"$cur\")\n";
      if (value == Value::kFile) out << "      mapfile -t COMPREPLY < <(compgen -f -- \"$cur\")\n";
      if (value == Value::kWords) {
        out << "      mapfile -t COMPREPLY < <(compgen -W '" << Replaced(option->get_option_text(), "|", " ")
            << "' -- \"$cur\")\n";
      }
      out << "      return\n      ;;\n";
    }
  }
  out << "  esac\n  case $verb in\n";
  for (const Page& page : pages) {
    out << "    '" << page.words << "') words='" << Words(*page.app) << "'"
        << (TakesFiles(*page.app) ? " files=-f" : "") << " ;;\n";
  }
  out << "  esac\n  [[ $cur == -* ]] && files=''\n"
         "  # shellcheck disable=SC2086: an empty one is none\n"
         "  mapfile -t COMPREPLY < <(compgen $files -W \"$words\" -- \"$cur\")\n}\n"
         "complete -o filenames -F _tremvik tremvik\n";
}

void WriteFish(const CLI::App& root, std::ostream& out) {
  out << "# Completion of tremvik(1) for fish; made from the program's own verbs and options.\n";
  const auto quoted = [](const std::string& text) {
    return "'" + Replaced(Replaced(text, "\\", "\\\\"), "'", "\\'") + "'";
  };
  out << "complete -c tremvik -f\n";
  for (const Page& page : PagesOf(root)) {
    const auto blank = page.words.rfind(' ');
    const std::string above = blank == std::string::npos
                                  ? "__fish_use_subcommand"
                                  : "__fish_seen_subcommand_from " + page.words.substr(0, blank);
    out << "complete -c tremvik -n " << quoted(above) << " -a " << page.app->get_name() << " -d "
        << quoted(OneLine(page.app->get_description())) << "\n";
    const std::string here = "__fish_seen_subcommand_from " + page.app->get_name();
    if (TakesFiles(*page.app)) out << "complete -c tremvik -n " << quoted(here) << " -F\n";
    for (const CLI::Option* option : OptionsOf(*page.app, false)) {
      out << "complete -c tremvik -n " << quoted(here);
      for (const std::string& name : option->get_snames())
        out << " -s " << name;
      for (const std::string& name : option->get_lnames())
        out << " -l " << name;
      const Value value = ValueOf(*option);
      if (value == Value::kFolder) out << " -x -a '(__fish_complete_directories)'";
      if (value == Value::kFile) out << " -r -F";
      if (value == Value::kWords) out << " -x -a " << quoted(Replaced(option->get_option_text(), "|", " "));
      if (value == Value::kAnything) out << " -x";
      out << " -d " << quoted(OneLine(option->get_description())) << "\n";
    }
  }
}

// One option as _arguments of zsh wants it: '--pasta[description]:DIR:_files -/'.
std::string ZshOption(const CLI::Option& option, const std::string& name) {
  std::string text = Replaced(OneLine(option.get_description()), "'", "'\\''");
  text = Replaced(Replaced(text, "[", "\\["), "]", "\\]");
  std::string spec = "'" + name + "[" + text + "]";
  const Value value = ValueOf(option);
  if (value != Value::kNone) spec += ":" + Replaced(option.get_option_text(), "|", " ") + ":";
  if (value == Value::kFolder) spec += "_files -/";
  if (value == Value::kFile) spec += "_files";
  if (value == Value::kWords) spec += "(" + Replaced(option.get_option_text(), "|", " ") + ")";
  return spec + "'";
}

void WriteZsh(const CLI::App& root, std::ostream& out) {
  out << "#compdef tremvik\n# Completion of tremvik(1) for zsh; made from the program's own verbs and options.\n"
         "local verb='' word\nfor word in ${words[2,CURRENT-1]}; do\n  case \"$verb $word\" in\n";
  for (const Page& page : PagesOf(root)) {
    const std::string pattern = page.words.find(' ') == std::string::npos ? " " + page.words : page.words;
    out << "    '" << pattern << "') verb='" << page.words << "' ;;\n";
  }
  out << "  esac\ndone\ncase $verb in\n";
  auto pages = PagesOf(root);
  pages.push_back({&root, ""});
  for (const Page& page : pages) {
    out << "  '" << page.words << "')\n";
    if (!VerbsOf(*page.app).empty()) {
      out << "    local -a verbs=(";
      for (const CLI::App* verb : VerbsOf(*page.app)) {
        out << " '" << verb->get_name() << ":" << Replaced(OneLine(verb->get_description()), ":", "\\:")
            << "'";
      }
      out << " )\n    _describe verbo verbs\n";
    }
    out << "    _arguments";
    for (const CLI::Option* option : OptionsOf(*page.app, false)) {
      for (const std::string& name : NamesOf(*option))
        out << " \\\n      " << ZshOption(*option, name);
    }
    if (TakesFiles(*page.app)) out << " \\\n      '*:ARQUIVO:_files'";
    out << "\n    ;;\n";
  }
  out << "esac\n";
}

// All files of the command line `root` in a folder; false when one cannot be written.
bool WriteAll(const CLI::App& root, const std::string& folder, const std::string& version) {
  bool written = true;
  const auto write = [&](const std::string& name, const auto& with) {
    std::ofstream file(folder + "/" + name, std::ios::binary);
    with(file);
    written = written && file.flush().good();
  };
  auto pages = PagesOf(root);
  pages.push_back({&root, ""});
  for (const Page& page : pages) {
    const std::string words = page.words.empty() ? "" : "-" + Replaced(page.words, " ", "-");
    write("tremvik" + words + ".1.scd", [&](std::ostream& out) { WriteManual(root, page, version, out); });
  }
  write("tremvik.bash", [&](std::ostream& out) { WriteBash(root, out); });
  write("tremvik.fish", [&](std::ostream& out) { WriteFish(root, out); });
  write("_tremvik", [&](std::ostream& out) { WriteZsh(root, out); });
  return written;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: cli_pages FOLDER VERSION\n";
    return 2;
  }
  bool written = true;
  tremvik::cli::WithCommandLine([&](const CLI::App& root) { written = WriteAll(root, argv[1], argv[2]); });
  if (!written) std::cerr << "cli_pages: the files could not be written\n";
  return written ? 0 : 1;
}
