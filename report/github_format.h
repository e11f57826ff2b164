#pragma once

#include <string>

#include "report/format.h"

namespace tremvik::report {

/// Commands of a GitHub workflow, a line each, that put each finding beside the line of its file.
class GithubFormat final : public Format {
 public:
  [[nodiscard]] std::string Begin(const Heading& heading) override;
  [[nodiscard]] std::string File(const FileReport& file) override;
  [[nodiscard]] std::string End(const Summary& summary) override;
};

}  // namespace tremvik::report
