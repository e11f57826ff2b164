// A rule of the catalogue for people and for programs.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "report/catalogue.h"
#include "text/style.h"

namespace tremvik::report {

/// "Label: text" behind two blanks, its further lines a little further in, each ended by LF.
[[nodiscard]] std::string RenderParagraph(std::string_view label, std::string_view body,
                                          const text::Look& look);

/// Code, title, message, what is asked, how to mend, further fields. Ends in a line end; no line is wider
/// than the look.
[[nodiscard]] std::string RenderRule(const Rule& rule, const text::Look& look);

/// Code and title alone.
[[nodiscard]] std::string RenderRuleTitle(const Rule& rule, const text::Look& look);

/// The rule as an object of docs/json.md.
[[nodiscard]] nlohmann::ordered_json RuleAsJson(const Rule& rule);

/// The message as an import says it, in one line, with an ellipsis for what a run fills in.
[[nodiscard]] std::string MessageOf(const Rule& rule);

/// "10" for "CR10-07", else what stands before the hyphen ("ARQ", "ERR").
[[nodiscard]] std::string_view GroupOf(const Rule& rule);

}  // namespace tremvik::report
