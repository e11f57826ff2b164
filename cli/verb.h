#pragma once

#include <string>

#include "cli/environment.h"
#include "cli/terminal.h"
#include "host/runtime_error.h"

namespace tremvik::cli {

class VerbOptions;

/// What the help says of a verb.
struct VerbTexts {
  const char* name;         ///< "validar"; "tabelas construir" for a verb below another
  const char* description;  ///< its line in the list of verbs
  const char* examples;     ///< at the end of its own help
};

/// One verb of the command line: its options, whose values its own members take, and its work.
class Verb {
 public:
  Verb() = default;
  virtual ~Verb() = default;
  Verb(const Verb&) = delete;
  Verb& operator=(const Verb&) = delete;

  [[nodiscard]] virtual VerbTexts Texts() const = 0;
  /// Declares the options.
  virtual void Declare(VerbOptions& options) = 0;
  /// What is wrong although each option by itself is right: a sentence without an end, empty for nothing.
  [[nodiscard]] virtual std::string Complaint() { return {}; }
  /// Does the work. What is wrong with the user's call or the machine becomes a sentence on `err`; other
  /// run-time errors are raised.
  [[nodiscard]] virtual ExitStatus Execute(const Terminal& terminal, Output& out, Output& err) = 0;
  /// The sentence for an error that `Execute` raised, with what to do.
  [[nodiscard]] virtual std::string Sentence(const RuntimeError& error) const { return Remedy(error, pasta); }

  std::string pasta;  ///< the component's folder; empty for a verb that uses none
};

}  // namespace tremvik::cli
