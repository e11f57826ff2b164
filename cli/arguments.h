#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tremvik::cli {

/// "tremvik ajuda validar" asks for what "tremvik validar --help" shows.
inline constexpr const char* kHelpVerb = "ajuda";

/// The words of a command line, put in order for the parser.
struct Arguments {
  std::vector<std::string> words;  ///< the verb first, then all else in the order in which it was given
  const CLI::App* verb = nullptr;  ///< the verb that they name; `app` itself where they name none
  std::string complaint;           ///< the first verb or option that is not known; empty when all are
};

/// Finds the verb wherever it stands among the options: one given before it counts like one behind it.
[[nodiscard]] Arguments Arrange(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace tremvik::cli
