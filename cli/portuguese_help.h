// What the command line parser says, in Portuguese.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace tremvik::cli {

/// The heading above the options in a help page.
inline constexpr const char* kOptionsGroup = "Opções";

/// Help pages with Portuguese headings; the positional arguments come first in the usage line.
class PortugueseFormatter final : public CLI::Formatter {
 public:
  PortugueseFormatter();
  std::string make_usage(const CLI::App* app, std::string name) const override;
  std::string make_option_opts(const CLI::Option* option) const override;
};

/// A parser's error as a sentence without an end.
[[nodiscard]] std::string InPortuguese(const CLI::ParseError& error);

}  // namespace tremvik::cli
