#include "cli/arguments.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "cli/verb_options.h"
#include "text/readable.h"

namespace tremvik::cli {
namespace {

std::vector<const CLI::App*> VerbsOf(const CLI::App& app) {
  return app.get_subcommands([](const CLI::App*) { return true; });
}

const CLI::App* FindVerb(const CLI::App& app, const std::string& name) {
  const auto verbs = VerbsOf(app);
  const auto found = std::ranges::find(verbs, name, &CLI::App::get_name);
  return found == verbs.end() ? nullptr : *found;
}

// The option of that name, of `app` or of any verb below it.
const CLI::Option* FindOption(const CLI::App& app, const std::string& name) {
  if (const CLI::Option* option = app.get_option_no_throw(name)) return option;
  for (const CLI::App* verb : VerbsOf(app)) {
    if (const CLI::Option* option = FindOption(*verb, name)) return option;
  }
  return nullptr;
}

void AddOptionNames(const CLI::App& app, std::vector<std::string>& names) {
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames())
      names.push_back("--" + name);
  }
  for (const CLI::App* verb : VerbsOf(app))
    AddOptionNames(*verb, names);
}

// "a opção "--pata" não existe (quis dizer "--pasta"?)".
std::string Unknown(std::string_view what, const std::string& word, const std::vector<std::string>& names) {
  return std::string(what) + " " + text::InQuotes(word) + " não existe" + DidYouMean(word, names);
}

std::string UnknownVerb(const CLI::App& app, const std::string& word) {
  std::vector<std::string> names;
  for (const CLI::App* verb : VerbsOf(app))
    names.push_back(verb->get_name());
  if (app.get_parent() == nullptr) names.emplace_back(kHelpVerb);
  return Unknown("o verbo", word, names);
}

std::string ComplaintAbout(const std::string& option, const CLI::App& app, const CLI::App& verb) {
  if (FindOption(verb, option) != nullptr) return {};
  if (FindOption(app, option) != nullptr)
    return "a opção \"" + text::Visible(option) + "\" não serve para " + verb.get_name();
  std::vector<std::string> names;
  AddOptionNames(verb, names);
  return Unknown("a opção", option, names);
}

bool IsOption(const std::string& word) { return word.size() > 1 && word.starts_with('-') && word != "--"; }

}  // namespace

Arguments Arrange(const CLI::App& app, const std::vector<std::string>& words) {
  Arguments arranged{.words = {}, .verb = &app, .complaint = {}};
  std::vector<std::string> verbs;
  std::vector<std::string> options;
  auto word = words.begin();
  for (; word != words.end() && *word != "--" && arranged.complaint.empty(); ++word) {
    if (IsOption(*word)) {
      options.push_back(word->substr(0, word->find('=')));
      arranged.words.push_back(*word);
      const CLI::Option* option = FindOption(app, *word);
      const bool value_follows = option != nullptr && option->get_items_expected_min() > 0;
      if (value_follows && word + 1 != words.end()) arranged.words.push_back(*++word);
    } else if (VerbsOf(*arranged.verb).empty()) {
      arranged.words.push_back(*word);
    } else if (const CLI::App* verb = FindVerb(*arranged.verb, *word)) {
      verbs.push_back(*word);
      arranged.verb = verb;
    } else {
      arranged.complaint = UnknownVerb(*arranged.verb, *word);
    }
  }
  arranged.words.insert(arranged.words.end(), word, words.end());
  arranged.words.insert(arranged.words.begin(), verbs.begin(), verbs.end());
  for (const auto& option : options) {
    if (auto complaint = ComplaintAbout(option, app, *arranged.verb); !complaint.empty()) {
      arranged.complaint = std::move(complaint);
      break;
    }
  }
  return arranged;
}

}  // namespace tremvik::cli
