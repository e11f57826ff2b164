#pragma once

#include <memory>
#include <string>
#include <variant>

#include "cli/environment.h"
#include "cli/verb.h"

namespace tremvik::cli {

/// Help, the version, or what is wrong with the command line: texts for the two streams and the exit status.
struct Reply {
  ExitStatus saida = ExitStatus::kAccepted;
  std::string out;
  std::string err;
};

/// The verb that the user asks for with its options, checked as far as the command line alone allows.
[[nodiscard]] std::variant<std::unique_ptr<Verb>, Reply> ParseCommandLine(int argc, const char* const* argv);

}  // namespace tremvik::cli
