// What the command line parser says, in Portuguese.
#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <string>

namespace tremvik::cli {

/// The heading above the options in a help page.
inline constexpr const char* kOptionsGroup = "Opções";

/// Help pages with Portuguese headings; the positional arguments come first in the usage line. Texts are
/// broken between words at `width` cells, the lines of examples are left whole.
class PortugueseFormatter final : public CLI::Formatter {
 public:
  explicit PortugueseFormatter(std::size_t width);
  std::string make_description(const CLI::App* app) const override;
  std::string make_usage(const CLI::App* app, std::string name) const override;
  std::string make_option(const CLI::Option* option, bool is_positional) const override;
  std::string make_option_opts(const CLI::Option* option) const override;
  std::string make_subcommand(const CLI::App* verb) const override;
  std::string make_footer(const CLI::App* app) const override;

 private:
  [[nodiscard]] std::string Entry(const std::string& name, const std::string& description) const;

  std::size_t width_;
};

/// A parser's error as a sentence without an end.
[[nodiscard]] std::string InPortuguese(const CLI::ParseError& error);

}  // namespace tremvik::cli
