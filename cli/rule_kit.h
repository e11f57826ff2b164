// The examples of the rules as makers of generators and of importers use them: files, and what an import must
// answer to each.
#pragma once

#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>

#include "sample/rule_examples.h"

namespace tremvik::cli {

/// What an import must answer to the file of `example`, in the form of samples/esperado.json, put together
/// from the catalogue and the example, not from a run. Questions are answered No.
[[nodiscard]] nlohmann::ordered_json ExpectedOf(const sample::RuleExample& example);

/// The whole kit by file name: a file for each rule that one can break, "esperado.json" and "LEIA-ME.md".
[[nodiscard]] std::map<std::string, std::string> RuleKit();

}  // namespace tremvik::cli
