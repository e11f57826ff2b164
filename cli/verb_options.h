// What a verb says to the parser of the command line.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "cli/console.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tremvik::cli {

/// " (quis dizer "json"?)" where one of `names` is near enough to `word` to be meant, else nothing.
[[nodiscard]] std::string DidYouMean(std::string_view word, std::span<const std::string> names);

/// Declares the options of one verb. An option's value is written where it was declared to go, which must
/// outlive the parsing; of several values of an option the last one counts.
class VerbOptions {
 public:
  explicit VerbOptions(CLI::App& verb) : verb_(verb) {}

  /// An argument without a name; exactly one if it is `required`.
  void Argument(const char* name, std::string& target, const char* description, bool required);
  /// One argument or more.
  void Arguments(const char* name, std::vector<std::string>& target, const char* description);
  /// An option with a text, `value` being its name in the help.
  void Text(const char* name, std::string& target, const char* value, const char* description);
  void Flag(const char* name, bool& target, const char* description);
  /// An option with a whole number from `least` to `greatest`.
  template <typename T>
  void Number(const char* name, T& target, T least, T greatest, const char* value, const char* description) {
    const Range range{static_cast<std::uint64_t>(least), static_cast<std::uint64_t>(greatest)};
    AddNumber(
        name, range, [&target](std::uint64_t number) { target = static_cast<T>(number); }, value,
        description);
  }
  /// An option whose value `take` judges: it answers what is wrong with it, without an end, or nothing.
  void Judged(const char* name, std::function<std::string(const std::string&)> take, const char* value,
              const char* description);

  /// --pasta
  void Folder(std::string& target);
  /// --responder
  void Responder(Answers& target);
  /// --json
  void Json(bool& target, const char* description);

 private:
  struct Range {
    std::uint64_t least;
    std::uint64_t greatest;
  };
  void AddNumber(const char* name, const Range& range, std::function<void(std::uint64_t)> take,
                 const char* value, const char* description);

  CLI::App& verb_;
};

}  // namespace tremvik::cli
