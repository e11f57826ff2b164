#pragma once

#include <functional>
#include <memory>
#include <string>
#include <variant>

#include "cli/environment.h"
#include "cli/verb.h"

namespace CLI {
class App;
}  // namespace CLI

namespace tremvik::cli {

/// Help, the version, or what is wrong with the command line: texts for the two streams and the exit status.
struct Reply {
  ExitStatus saida = ExitStatus::kAccepted;
  std::string out;
  std::string err;
};

/// The verb that the user asks for with its options, checked as far as the command line alone allows.
[[nodiscard]] std::variant<std::unique_ptr<Verb>, Reply> ParseCommandLine(int argc, const char* const* argv);

/// Shows `look` the whole command line, as its parser has it: for manual pages and completions.
void WithCommandLine(const std::function<void(const CLI::App&)>& look);

}  // namespace tremvik::cli
