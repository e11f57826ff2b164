#include "cli/commands.h"

namespace tremvik::cli {

ExitStatus Execute(Verb& verb, const Terminal& terminal, Output& out, Output& err) {
  if (!verb.pasta.empty()) {
    if (const std::string problem = ProblemOfFolder(verb.pasta); !problem.empty()) {
      err.Write("tremvik: " + problem + "\n");
      return ExitStatus::kEnvironment;
    }
  }
  try {
    return verb.Execute(terminal, out, err);
  } catch (const RuntimeError& error) {
    out.Flush();
    err.Write("tremvik: " + verb.Sentence(error) + "\n");
    return MeaningOf(error.number()) == ExitStatus::kFailure ? ExitStatus::kFailure
                                                             : ExitStatus::kEnvironment;
  }
}

}  // namespace tremvik::cli
