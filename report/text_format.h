#pragma once

#include <string>

#include "report/format.h"
#include "text/style.h"

namespace tremvik::report {

/// For people: each finding in its place, with its rule, its reason and how to mend it; what a rule asks is
/// told once a file.
class TextFormat final : public Format {
 public:
  explicit TextFormat(const text::Look& look) : look_(look) {}

  [[nodiscard]] std::string Begin(const Heading& heading) override;
  [[nodiscard]] std::string File(const FileReport& file) override;
  [[nodiscard]] std::string End(const Summary& summary) override;

 private:
  text::Look look_;
  bool spaced_ = true;  ///< an empty line was written last
};

/// "5 faltas, 1 aviso".
[[nodiscard]] std::string FindingsInWords(std::size_t faltas, std::size_t avisos);

/// What stands behind the last file: findings by rule and by file as tables, then the counts in a line.
/// Nothing but this line where there is only one finding. An empty line goes before the tables unless one was
/// written last.
[[nodiscard]] std::string RenderSummary(const Summary& summary, const text::Look& look, bool spaced = true);

}  // namespace tremvik::report
